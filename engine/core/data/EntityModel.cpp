#include "kelData/EntityModel.h"
#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace kelData {

Attribute::Attribute(const kel::Name& name, std::type_index type, const void* defaultValue, std::size_t size)
    : kel::Object(name), m_type(type), m_default(size)
{
  std::memcpy(m_default.data(), defaultValue, size);
}

void EntityModel::setBaseEntity(EntityModel* base)
{
  if (m_base || !m_attributes.empty() || m_frozen)
    throw std::logic_error("the base of entity model '" + getName() + "' comes before its attributes");
  m_base = base;
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
  if (m_frozen || attribute->m_entity || getAttribute(attribute->getName()))
    throw std::logic_error("attribute '" + attribute->getName() + "' cannot be added to entity model '" +
                           getName() + "'");
  attribute->m_entity = this;
  m_attributes.push_back(keep);
}

Attribute* EntityModel::getAttribute(const kel::Name& name) const
{
  const auto found = std::find_if(m_attributes.begin(), m_attributes.end(),
                                  [&](const auto& attribute) { return attribute->getName() == name.str(); });
  return found == m_attributes.end() ? nullptr : found->get();
}

std::size_t EntityModel::getNumBytes() const
{
  std::size_t bytes = 0;
  for (const auto& attribute : m_attributes) bytes += attribute->getElementSize();
  return bytes;
}

} // namespace kelData
