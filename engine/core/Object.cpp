#include "kel/Component.h"
#include <algorithm>
#include <atomic>

namespace kel {

Object::Object(const Name& name) : m_name(name)
{
  static std::atomic<unsigned int> next = 0;
  m_id = next++;
}

Path Object::getPath() const
{
  Path path = m_context ? m_context->getPath() : Path();
  path.append(getName());
  return path;
}

Object* Object::getRootContext()
{
  Object* root = this;
  while (root->m_context) root = root->m_context;
  return root;
}

bool Object::hasParent(const Object* object) const
{
  for (const Object* context = m_context; context; context = context->m_context)
    if (context == object) return true;
  return false;
}

Component::~Component() { removeAllObjects(); }

void Component::addObject(Object* object, bool)
{
  if (!object || object == this || object->m_context == this || hasParent(object)) return;
  const ref_ptr<Object> keep(object);
  if (auto* holder = dynamic_cast<Component*>(object->m_context)) holder->removeObject(object);
  m_objects.push_back(keep);
  object->setContext(this);
}

void Component::removeObject(Object* object)
{
  const auto found = std::find(m_objects.begin(), m_objects.end(), object);
  if (found == m_objects.end()) return;
  const ref_ptr<Object> keep(*found);
  m_objects.erase(found);
  keep->setContext(nullptr);
}

void Component::removeAllObjects()
{
  for (const ref_ptr<Object>& object : m_objects) object->setContext(nullptr);
  m_objects.clear();
}

Object* Component::getObject(const Name& name) const
{
  const auto found = std::find_if(m_objects.begin(), m_objects.end(),
                                  [&](const ref_ptr<Object>& object) { return object->m_name == name; });
  return found == m_objects.end() ? nullptr : found->get();
}

} // namespace kel
