#pragma once
#include "kelStream/StorageAgent.h"
#include <map>
#include <vector>

namespace kelStream {

/// Knows the agent of every class that an archive can hold. Agents enter at library load and leave at unload.
class StorageManager
{
public:
  /// Something that owns an agent and is destroyed with it.
  class ProxyBase
  {
  public:
    virtual ~ProxyBase() = default;
  };

  /// Owns an agent of type A and keeps it entered for its own life.
  template <class A> class RegisterStorageProxy : public ProxyBase
  {
  public:
    explicit RegisterStorageProxy(const char* name)
    {
      StorageManager* manager = StorageManager::instance();
      if (manager) {
        m_agent = new A(name);
        manager->add(name, m_agent);
      }
      StorageManager::add(this);
    }
    RegisterStorageProxy(const RegisterStorageProxy&) = delete;
    RegisterStorageProxy& operator=(const RegisterStorageProxy&) = delete;
    ~RegisterStorageProxy() override
    {
      StorageManager::remove(this);
      if (m_agent) StorageManager::instance()->remove(m_agent);
      delete m_agent;
    }

  private:
    StorageAgent* m_agent = nullptr;
  };

  /// The manager of the process; never null while the core library is loaded.
  static StorageManager* instance();

  /// The agent of the class of that name, null if there is none. Not owned.
  StorageAgent* find(const kel::String& name) const;
  /// Enters an agent, which the caller keeps. A later one of the same name takes its place.
  void add(const char* name, StorageAgent* agent);
  void remove(StorageAgent* agent);

  /// Enters and removes a proxy.
  static void add(ProxyBase* proxy);
  static void remove(ProxyBase* proxy);

private:
  StorageManager() = default;

  std::map<kel::String, StorageAgent*> m_agents;
  std::vector<ProxyBase*> m_proxies;
};

/// Static object that makes `T` known to archives under a name, with T's default constructor.
template <class T> class Storage : public StorageManager::RegisterStorageProxy<DefStorageAgent<T>>
{
  using StorageManager::RegisterStorageProxy<DefStorageAgent<T>>::RegisterStorageProxy;
};

} // namespace kelStream
