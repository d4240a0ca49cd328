#include "kelStream/Serializable.h"
#include "kelStream/StorageManager.h"
#include <algorithm>
#include <atomic>

namespace kelStream {

namespace {
std::uint32_t nextIndex()
{
  static std::atomic<std::uint32_t> next = 0;
  return next++;
}
} // namespace

Serializable::Serializable() : m_index(nextIndex()) {}

Serializable::Serializable(const Serializable& other) : m_index(nextIndex()), m_enabled(other.m_enabled) {}

const kel::Uuid& Serializable::getUuid() const
{
  if (m_uuid == kel::Uuid()) m_uuid = kel::UuidGenerator().generate();
  return m_uuid;
}

StorageAgent* Serializable::getStorageAgent() const
{
  return StorageManager::instance()->find(getClassName());
}

StorageManager* StorageManager::instance()
{
  // Never destroyed: libraries that are unloaded at exit still remove their agents.
  static StorageManager* manager = new StorageManager;
  return manager;
}

StorageAgent* StorageManager::find(const kel::String& name) const
{
  const auto found = m_agents.find(name);
  return found == m_agents.end() ? nullptr : found->second;
}

void StorageManager::add(const char* name, StorageAgent* agent) { m_agents[name] = agent; }

void StorageManager::remove(StorageAgent* agent)
{
  std::erase_if(m_agents, [agent](const auto& entry) { return entry.second == agent; });
}

void StorageManager::add(ProxyBase* proxy) { instance()->m_proxies.push_back(proxy); }

void StorageManager::remove(ProxyBase* proxy) { std::erase(instance()->m_proxies, proxy); }

} // namespace kelStream
