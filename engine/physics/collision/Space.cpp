#include "kelCollide/Space.h"
#include "collision/Detector.h"
#include "kel/RigidBody.h"
#include <algorithm>

namespace kelCollide {

namespace {
kel::UInt64 pairKey(const Geometry& first, const Geometry& second)
{
  const auto [low, high] = std::minmax({first.getId(), second.getId()});
  return kel::UInt64(low) << 32 | high;
}
} // namespace

Space::Space() : m_detector(std::make_unique<Detector>(m_broadPhase, m_contactReach)) {}

Space::~Space()
{
  m_detector.reset();
  for (const auto& geometry : m_geometries) geometry->m_space = nullptr;
}

bool Space::add(Geometry* geometry)
{
  const kel::ref_ptr<Geometry> keep(geometry);
  if (!geometry || geometry->m_space) return false;
  m_geometries.push_back(keep);
  geometry->m_space = this;
  geometry->m_spaceOrder = m_nextOrder++;
  m_detector->add(*geometry);
  return true;
}

bool Space::remove(Geometry* geometry)
{
  if (!geometry || geometry->m_space != this) return false;
  dropContacts(geometry);
  m_detector->remove(*geometry);
  geometry->m_space = nullptr;
  m_geometries.erase(std::find(m_geometries.begin(), m_geometries.end(), geometry));
  return true;
}

Geometry* Space::getGeometry(const kel::Name& name) const
{
  const auto found = std::find_if(m_geometries.begin(), m_geometries.end(),
                                  [&](const auto& geometry) { return geometry->getName() == name.str(); });
  return found == m_geometries.end() ? nullptr : found->get();
}

bool Space::setBroadPhaseAlgorithm(int algorithm)
{
  if (algorithm != SWEEP_AND_PRUNE && algorithm != HIERARCHICAL_GRID) return false;
  m_broadPhase = static_cast<BroadPhaseAlgorithm>(algorithm);
  clearContacts();
  return true;
}

void Space::setContactReach(kel::Real reach)
{
  m_contactReach = std::max(reach, 0.0);
  clearContacts();
}

void Space::update()
{
  updateBroadPhase();
  updateNarrowPhase();
}

void Space::updateBroadPhase()
{
  for (const auto& geometry : m_geometries) m_detector->refresh(*geometry);
  m_detector->findPairs();
}

void Space::updateNarrowPhase() { m_detector->findContacts(m_contacts); }

GeometryContact Space::getContact(const Geometry* first, const Geometry* second) const
{
  for (const GeometryContact& contact : m_contacts) {
    const Geometry* one = contact.geometry(0);
    const Geometry* two = contact.geometry(1);
    if ((one == first && two == second) || (one == second && two == first)) return contact;
  }
  return {};
}

void Space::clearContacts()
{
  m_contacts.clear();
  m_detector = std::make_unique<Detector>(m_broadPhase, m_contactReach);
  for (const auto& geometry : m_geometries) m_detector->add(*geometry);
}

bool Space::canCollide(const Geometry* first, const Geometry* second, const Space* space)
{
  if (!first || !second || first == second) return false;
  if (!first->getEnable() || !second->getEnable()) return false;
  if (!first->getEnableCollisions() || !second->getEnableCollisions()) return false;
  const kel::RigidBody* body1 = first->getRigidBody();
  const kel::RigidBody* body2 = second->getRigidBody();
  if ((body1 && !body1->getEnable()) || (body2 && !body2->getEnable())) return false;
  if (body1 && body1 == body2) return false;
  if (!space) return true;
  if (!space->getEnableCollisions(first, second)) return false;
  const bool areHere = first->m_space == space && second->m_space == space;
  if (areHere && !space->m_groups->canCollide(*first, *second)) return false;
  return !space->m_filter || space->m_filter(*first, *second);
}

void Space::setEnableCollisions(const Geometry* first, const Geometry* second, bool enable)
{
  if (!first || !second) return;
  if (enable)
    m_disabledPairs.erase(pairKey(*first, *second));
  else
    m_disabledPairs.insert(pairKey(*first, *second));
}

bool Space::getEnableCollisions(const Geometry* first, const Geometry* second) const
{
  if (!first || !second) return false;
  return m_disabledPairs.empty() || !m_disabledPairs.count(pairKey(*first, *second));
}

void Space::dropContacts(const Geometry* geometry)
{
  std::erase_if(m_contacts, [geometry](const GeometryContact& contact) {
    return contact.geometry(0) == geometry || contact.geometry(1) == geometry;
  });
}

} // namespace kelCollide
