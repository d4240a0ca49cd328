#include "kelData/EntityModel.h"
#include "kelData/EntityStorage.h"
#include <algorithm>
#include <atomic>
#include <iostream>
#include <map>
#include <mutex>
#include <stdexcept>

namespace kelData {

namespace {

/// All living models, and the names above theirs. Never destroyed, as models may outlive everything else.
struct Registry
{
  std::mutex mutex;
  std::vector<EntityModel*> models;
  std::map<kel::String, kel::ref_ptr<kel::Model>> contexts;

  static Registry& instance()
  {
    static Registry* registry = new Registry;
    return *registry;
  }
  /// The model of a name that other models lie in; the root has the empty name.
  kel::Model* context(const kel::String& fullName)
  {
    kel::ref_ptr<kel::Model>& model = contexts[fullName];
    if (!model) {
      const std::size_t dot = fullName.rfind('.');
      kel::Model* above = fullName.empty()           ? nullptr
                          : dot == kel::String::npos ? context("")
                                                     : context(fullName.substr(0, dot));
      model = new kel::Model(fullName.substr(dot == kel::String::npos ? 0 : dot + 1), above);
    }
    return model.get();
  }
};

std::atomic<bool> s_threadSafe = false;

} // namespace

EntityModel::EntityModel(const kel::Name& fullName) : kel::Model(fullName)
{
  Registry& registry = Registry::instance();
  const std::scoped_lock lock(registry.mutex);
  const std::size_t dot = fullName.str().rfind('.');
  const bool isNested = dot != kel::String::npos;
  setContext(registry.context(isNested ? fullName.str().substr(0, dot) : ""));
  if (isNested) setName(fullName.str().substr(dot + 1));
  registry.models.push_back(this);
}

EntityModel::~EntityModel()
{
  {
    Registry& registry = Registry::instance();
    const std::scoped_lock lock(registry.mutex);
    std::erase(registry.models, this);
  }
  for (const auto& attribute : m_attributes) {
    if (attribute->m_entity != this) continue;
    attribute->m_entity = nullptr;
    attribute->setContext(nullptr);
  }
}

void EntityModel::setSource(Loader* source)
{
  m_source = source;
  if (source) source->initAttributeAccessors();
}

void EntityModel::setBaseEntity(EntityModel* base)
{
  if (!base || base == this || m_base || !m_attributes.empty() || m_isFrozen)
    throw std::logic_error("the base of entity model '" + getName() + "' comes before its attributes");
  m_base = base;
  base->m_isFrozen = true;
  m_attributes = base->m_attributes;
}

bool EntityModel::isDerivedFrom(const EntityModel* model) const
{
  for (const EntityModel* m = this; m; m = m->m_base.get())
    if (m == model) return true;
  return false;
}

void EntityModel::addAttribute(Attribute* attribute)
{
  const kel::ref_ptr<Attribute> keep(attribute);
  if (!attribute || m_isFrozen || attribute->m_entity || getAttribute(attribute->getName()))
    throw std::logic_error("attribute '" + (attribute ? attribute->getName() : "") +
                           "' cannot be added to entity model '" + getName() + "'");
  attribute->m_entity = this;
  attribute->m_isUsed = true;
  attribute->m_column = m_attributes.size();
  attribute->setContext(this);
  m_attributes.push_back(keep);
}

Attribute* EntityModel::getAttribute(const kel::Name& name) const
{
  const auto found = std::find_if(m_attributes.begin(), m_attributes.end(),
                                  [&](const auto& attribute) { return attribute->getName() == name.str(); });
  return found == m_attributes.end() ? nullptr : found->get();
}

EntityStorage* EntityModel::getDefaultStorage()
{
  if (!m_defaultStorage) m_defaultStorage = new EntityStorage(this);
  return m_defaultStorage.get();
}

EntityData* EntityModel::createData(EntityStorage& storage) const
{
  if (!storage.getEntityModel()->isDerivedFrom(this))
    throw std::logic_error("entity storage '" + storage.getName() + "' is not one of entity model '" +
                           getName() + "'");
  return storage.createData();
}

std::size_t EntityModel::getNumBytes() const
{
  std::size_t bytes = 0;
  for (const auto& attribute : m_attributes)
    if (!attribute->isShared()) bytes += attribute->getElementSize();
  return bytes;
}

void EntityModel::print() const
{
  print(std::cout);
  std::cout.flush();
}

void EntityModel::print(std::ostream& stream) const
{
  stream << fullName();
  if (m_base) stream << " : " << m_base->fullName();
  stream << '\n';
  for (const auto& attribute : m_attributes) {
    const Format* format = attribute->getDefaultFormat();
    stream << "  " << attribute->getName() << ": " << (format ? format->getName() : "opaque");
    if (format) stream << " = " << attribute->getDefaultValue()->toString();
    stream << '\n';
  }
}

void EntityModel::setThreadSafe(bool threadSafe)
{
  s_threadSafe.store(threadSafe, std::memory_order_relaxed);
}

bool EntityModel::getThreadSafe() { return s_threadSafe.load(std::memory_order_relaxed); }

kel::Model* EntityModel::getRootModel()
{
  Registry& registry = Registry::instance();
  const std::scoped_lock lock(registry.mutex);
  return registry.context("");
}

std::vector<EntityModel*> getEntities()
{
  Registry& registry = Registry::instance();
  const std::scoped_lock lock(registry.mutex);
  return registry.models;
}

EntityModel* getEntity(const kel::String& fullName)
{
  Registry& registry = Registry::instance();
  const std::scoped_lock lock(registry.mutex);
  const auto found = std::find_if(registry.models.rbegin(), registry.models.rend(),
                                  [&](const EntityModel* model) { return model->fullName() == fullName; });
  return found == registry.models.rend() ? nullptr : *found;
}

bool hasEntity(const kel::String& fullName) { return getEntity(fullName) != nullptr; }

} // namespace kelData
