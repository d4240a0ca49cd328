#include "collision/ContactRows.h"
#include "kel/ContactMaterial.h"
#include "kel/RigidBody.h"
#include "kelCollide/ContactReducer.h"
#include "kelCollide/Space.h"
#include <algorithm>
#include <map>

namespace kelCollide {

using kel::ContactMaterial;

namespace {

using Points = kel::Vector<ContactPoint*>;

/// The points of a pair of bodies, and how finely they are thinned out.
struct Group
{
  Points points;
  kel::UInt8 binResolution = 0;
  const kel::Frame* frame = nullptr;
};

kel::UInt32 bodyId(const GeometryContact& contact, std::size_t side)
{
  const kel::RigidBody* body = contact.rigidBody(side);
  return body ? body->getId() : kelData::EntityPtr::NO_ID;
}

void collect(const GeometryContact& contact, Points& points)
{
  const ContactRows& rows = ContactRows::instance();
  for (std::size_t i = 0; i < contact.getNumPoints(); ++i) {
    ContactPoint& point = rows.points[contact.getId()][i];
    if (point.enabled()) points.push_back(&point);
  }
}

/// Switches off the points that the bins leave out.
void thinOut(Points& points, kel::UInt8 binResolution, const kel::Frame* frame)
{
  for (const ContactPoint* point : points) point->enabled() = false;
  const Points all = points;
  ContactReducer::reduce(points, binResolution, frame);
  for (const ContactPoint* point : points) point->enabled() = true;
  for (const ContactPoint* point : all)
    if (!point->enabled()) ContactPointRows::instance().impulse[point->getId()] = kel::Vec3();
}

} // namespace

void Space::reduceContacts()
{
  if (!m_reductionEnabled) return;
  std::map<std::pair<kel::UInt32, kel::UInt32>, Group> groups; // by bodies, in the same order in each run
  for (const GeometryContact& contact : m_contacts) {
    const ContactMaterial* material = contact.getMaterial();
    if (!material) continue;
    const kel::UInt32 mode = material->getContactReductionMode();
    const kel::UInt8 ownResolution = material->getContactReductionBinResolution();
    const kel::UInt8 resolution = ownResolution ? ownResolution : m_reductionBinResolution;
    const kel::Frame* frame = contact.geometry(0)->getFrame();
    if (mode == ContactMaterial::REDUCE_ALL) {
      const auto [low, high] = std::minmax({bodyId(contact, 0), bodyId(contact, 1)});
      Group& group = groups[{low, high}];
      if (!group.frame) group.frame = frame;
      group.binResolution = std::max(group.binResolution, resolution);
      collect(contact, group.points);
    } else if (mode == ContactMaterial::REDUCE_GEOMETRY && contact.getNumPoints() > m_reductionThreshold) {
      Points points;
      collect(contact, points);
      if (points.size() > m_reductionThreshold) thinOut(points, resolution, frame);
    }
  }
  for (auto& [bodies, group] : groups)
    if (group.points.size() > m_reductionThreshold) thinOut(group.points, group.binResolution, group.frame);
}

} // namespace kelCollide
