#include "kel/Constraint.h"
#include <algorithm>

namespace kel {

Constraint::Constraint(RigidBody* body1, RigidBody* body2)
{
  for (RigidBody* body : {body1, body2})
    if (body) m_bodies.emplace_back(body);
}

RigidBody* Constraint::getBodyAt(std::size_t index) const
{
  return index < m_bodies.size() ? m_bodies[index].get() : nullptr;
}

bool Constraint::addElementaryConstraint(const Name& name, ElementaryConstraint* constraint)
{
  if (!constraint) return false;
  for (const auto& other : m_elementary)
    if (other == constraint || other->getName() == name.str()) return false;
  constraint->setName(name);
  m_elementary.emplace_back(constraint);
  return true;
}

bool Constraint::removeElementaryConstraint(const ElementaryConstraint* constraint)
{
  return std::erase(m_elementary, constraint) > 0;
}

ElementaryConstraint* Constraint::getElementaryConstraint(std::size_t index) const
{
  return index < m_elementary.size() ? m_elementary[index].get() : nullptr;
}

} // namespace kel
