#include "collision/Detector.h"
#include "collision/ContactRows.h"
#include "collision/bulletVectors.h"
#include "collision/narrow/collideTrees.h"
#include "collision/narrow/isSound.h"
#include "kel/BuildConfiguration.h"
#include "kel/FrictionModel.h"
#include "kel/Logger.h"
#include "kel/RigidBody.h"
#include "kelCollide/ShapeGroup.h"
#include <BulletCollision/BroadphaseCollision/btAxisSweep3.h>
#include <BulletCollision/BroadphaseCollision/btDbvtBroadphase.h>
#include <algorithm>
#include <cmath>

namespace kelCollide {

using kel::Vec3;
using kel::Vec3f;

namespace {

/// How far a point may have moved in a step to be the same one, for geometries of a metre and more.
constexpr kel::Real SAME_POINT = 0.02;

/// Room for the first geometries of the sweep, which must be told how many there will be.
constexpr std::size_t FIRST_ROOM = 4096;

std::unique_ptr<btBroadphaseInterface> makeSweep(std::size_t room)
{
  constexpr btScalar reach = 10000; // m; what lies beyond is found, slowly
  return std::make_unique<bt32BitAxisSweep3>(btVector3(-reach, -reach, -reach),
                                             btVector3(reach, reach, reach), static_cast<unsigned>(room));
}

btBroadphaseProxy* createProxy(btBroadphaseInterface& broadphase, const BoundingAABB& bound, void* item)
{
  return broadphase.createProxy(toBullet(bound.min()), toBullet(bound.max()), 0, item,
                                btBroadphaseProxy::DefaultFilter, btBroadphaseProxy::AllFilter, nullptr);
}

/// Whether two boxes come nearer than `reach` to each other.
bool areNear(const BoundingAABB& one, const BoundingAABB& other, kel::Real reach)
{
  for (std::size_t i = 0; i < 3; ++i)
    if (one.min()[i] - reach > other.max()[i] || one.max()[i] + reach < other.min()[i]) return false;
  return true;
}

bool isDynamic(const Geometry& geometry)
{
  const kel::RigidBody* body = geometry.getRigidBody();
  return body && body->getMotionControl() == kel::RigidBody::DYNAMICS;
}

/// Whether a shape, or a part of a group, has a form.
bool hasForm(const Shape& shape)
{
  const ShapeGroup* group = shape.asGroup();
  if (!group) return isSound(shape);
  const auto& children = group->getChildren();
  return std::any_of(children.begin(), children.end(), [](const auto& child) { return hasForm(*child); });
}

/// Whether a shape has a place. What a script has sent out of all bounds would touch everything.
bool hasPlace(const Shape& shape)
{
  const kel::AffineMatrix4x4& place = shape.getTransform();
  kel::Real sum = 0;
  for (std::size_t row = 0; row < 4; ++row)
    for (std::size_t column = 0; column < 3; ++column) sum += 0 * place(row, column);
  return sum == 0; // 0 times what is not finite is a NaN
}

void warnOfLoss(const Geometry& geometry)
{
  const kel::RigidBody* body = geometry.getRigidBody();
  kel::logWarning("Geometry '" + geometry.getName() + (body ? "' of body '" + body->getName() : "") +
                  "' collides with nothing: its size or its place is no finite number.");
}

Vec3 toFrameOf(const Geometry& geometry, const Vec3& point)
{
  const kel::AffineMatrix4x4& transform = geometry.getTransform();
  return transform.transform3x3Inv(point - transform.getTranslate());
}

Vec3 surfaceVelocity(const Geometry& geometry)
{
  return geometry.getTransform().transformVector(Vec3(geometry.getSurfaceVelocity()));
}

} // namespace

Space::Detector::Detector(BroadPhaseAlgorithm algorithm, kel::Real reach)
    : m_reach(reach), m_sweepRoom(algorithm == SWEEP_AND_PRUNE ? FIRST_ROOM : 0)
{
  if (m_sweepRoom != 0)
    m_broadphase = makeSweep(m_sweepRoom);
  else
    m_broadphase = std::make_unique<btDbvtBroadphase>();
}

Space::Detector::~Detector()
{
  for (auto& [order, item] : m_items) release(item);
  releaseMaterials();
  for (const GeometryContact& row : m_contactRows) ContactRows::instance().storage->destroyInstance(row);
  for (const ContactPoint& row : m_points) ContactPointRows::instance().storage->destroyInstance(row);
}

void Space::Detector::add(Geometry& geometry)
{
  if (m_sweepRoom != 0 && m_items.size() == m_sweepRoom) growSweep();
  insert(geometry, m_items[geometry.m_spaceOrder]);
}

void Space::Detector::growSweep()
{
  m_sweepRoom *= 2;
  auto larger = makeSweep(m_sweepRoom);
  for (auto& [order, item] : m_items) {
    if (!item.proxy) continue;
    release(item); // what the old one still holds would be lost with it
    item.proxy = createProxy(*larger, grown(item), &item);
  }
  m_broadphase = std::move(larger);
}

void Space::Detector::insert(Geometry& geometry, Item& item)
{
  release(item);
  const Shape* shape = geometry.getShape();
  item.geometry = &geometry;
  item.shapeChanges = geometry.m_shapeChanges;
  item.shapeModifiedCount = shape ? shape->getModifiedCount() : 0;
  item.lastMove = m_numUpdates;
  geometry.m_placeChanged = false;
  geometry.updateBoundingVolume();
  if (!shape) return;
  if (!hasForm(*shape) || !hasPlace(*shape)) {
    if (!item.isLost && (!shape->isGroup() || hasForm(*shape))) warnOfLoss(geometry);
    item.isLost = true;
    return;
  }
  item.isLost = false;
  const BoundingAABB form = shape->calculateLocalBound();
  item.size = std::min(1.0, (form.max() - form.min()).length() / 2);
  item.bound = *geometry.getBoundingVolume();
  item.proxy = createProxy(*m_broadphase, grown(item), &item);
}

BoundingAABB Space::Detector::grown(const Item& item) const
{
  BoundingAABB bound = item.bound;
  bound.min() -= Vec3(m_reach * item.size);
  bound.max() += Vec3(m_reach * item.size);
  return bound;
}

void Space::Detector::release(Item& item)
{
  if (item.proxy) m_broadphase->destroyProxy(item.proxy, nullptr);
  item.proxy = nullptr;
}

void Space::Detector::remove(Geometry& geometry)
{
  release(m_items.at(geometry.m_spaceOrder));
  m_items.erase(geometry.m_spaceOrder);
}

void Space::Detector::refresh(Geometry& geometry)
{
  Item& item = m_items.at(geometry.m_spaceOrder);
  const Shape* shape = geometry.getShape();
  if (hasNewForm(item)) {
    insert(geometry, item);
  } else if (shape && geometry.m_placeChanged) {
    if (!item.proxy || !hasPlace(*shape)) {
      insert(geometry, item);
      return;
    }
    geometry.m_placeChanged = false;
    item.lastMove = m_numUpdates;
    geometry.updateBoundingVolume();
    item.bound = *geometry.getBoundingVolume();
    const BoundingAABB bound = grown(item);
    m_broadphase->setAabb(item.proxy, toBullet(bound.min()), toBullet(bound.max()), nullptr);
  }
}

bool Space::Detector::hasNewForm(const Item& item)
{
  const Shape* shape = item.geometry->getShape();
  return item.geometry->m_shapeChanges != item.shapeChanges ||
         (shape && shape->getModifiedCount() != item.shapeModifiedCount);
}

bool Space::Detector::hasMoved(const Item& item) const
{
  return item.lastMove == m_numUpdates || item.geometry->m_placeChanged || hasNewForm(item);
}

void Space::Detector::findPairs() { m_broadphase->calculateOverlappingPairs(nullptr); }

void Space::Detector::findContacts(std::vector<GeometryContact>& contacts)
{
  keepOldPoints();
  findWantedPairs();
  findOldPairs();
  collidePairs();
  writePairs(contacts);
  ++m_numUpdates;
}

void Space::Detector::collidePairs()
{
  constexpr std::size_t chunkSize = 64; // pairs, which one thread takes at once
  m_chunks.resize((m_pairs.size() + chunkSize - 1) / chunkSize);
  m_workers.run(m_chunks.size(), kel::getNumThreads(), [&](std::size_t chunk) {
    Patch& patch = m_chunks[chunk];
    patch.clear();
    const std::size_t end = std::min(m_pairs.size(), (chunk + 1) * chunkSize);
    for (std::size_t i = chunk * chunkSize; i < end; ++i) {
      m_pairs[i].beginPoints = patch.size();
      collide(m_pairs[i], patch);
      m_pairs[i].endPoints = patch.size();
    }
  });
  m_patch.clear();
  for (std::size_t i = 0; i < m_pairs.size(); ++i) {
    const Patch& patch = m_chunks[i / chunkSize];
    Pair& pair = m_pairs[i];
    const auto from = patch.begin() + static_cast<std::ptrdiff_t>(pair.beginPoints);
    const auto to = patch.begin() + static_cast<std::ptrdiff_t>(pair.endPoints);
    pair.beginPoints = m_patch.size();
    m_patch.insert(m_patch.end(), from, to);
    pair.endPoints = m_patch.size();
  }
}

void Space::Detector::collide(Pair& pair, Patch& patch) const
{
  if (pair.old && !pair.hasMoved)
    patch.insert(patch.end(), m_oldPatch.begin() + static_cast<std::ptrdiff_t>(pair.old->beginPoints),
                 m_oldPatch.begin() + static_cast<std::ptrdiff_t>(pair.old->endPoints));
  else
    collideTrees(*pair.first->getShape(), *pair.second->getShape(), m_reach * pair.size, patch);
}

void Space::Detector::keepOldPoints()
{
  m_oldPairs.swap(m_pairs);
  m_oldPatch.swap(m_patch);
  m_oldPoints.swap(m_known);
  const ContactPointRows& rows = ContactPointRows::instance();
  for (std::size_t i = 0; i < m_oldPoints.size(); ++i) {
    const kel::Index row = m_points[i].getId();
    m_oldPoints[i].impulse = rows.enabled[row] ? rows.impulse[row] : Vec3();
  }
}

void Space::Detector::findWantedPairs()
{
  m_pairs.clear();
  btBroadphasePairArray& found = m_broadphase->getOverlappingPairCache()->getOverlappingPairArray();
  for (int i = 0; i < found.size(); ++i) {
    const auto* item1 = static_cast<const Item*>(found[i].m_pProxy0->m_clientObject);
    const auto* item2 = static_cast<const Item*>(found[i].m_pProxy1->m_clientObject);
    if (item2->geometry->m_spaceOrder < item1->geometry->m_spaceOrder) std::swap(item1, item2);
    // The library's pairs are more, and not the same for each algorithm.
    if (!areNear(item1->bound, item2->bound, m_reach * item1->size)) continue;
    Geometry* first = item1->geometry;
    Geometry* second = item2->geometry;
    if (!first->getShape() || !second->getShape()) continue;
    if (isDynamic(*first) || isDynamic(*second) || first->isSensor() || second->isSensor()) {
      const auto order = std::uint64_t{first->m_spaceOrder} << 32 | second->m_spaceOrder;
      const kel::Real size = std::min(item1->size, item2->size);
      m_pairs.push_back({order, first, second, size, hasMoved(*item1) || hasMoved(*item2)});
    }
  }
  std::sort(m_pairs.begin(), m_pairs.end());
  std::erase_if(m_pairs,
                [](const Pair& pair) { return !pair.first->m_space->canCollide(pair.first, pair.second); });
}

void Space::Detector::findOldPairs()
{
  auto old = m_oldPairs.begin();
  for (Pair& pair : m_pairs) {
    old = std::find_if_not(old, m_oldPairs.end(), [&](const Pair& other) { return other < pair; });
    if (old == m_oldPairs.end()) return;
    if (!(pair < *old)) pair.old = &*old;
  }
}

void Space::Detector::writePairs(std::vector<GeometryContact>& contacts)
{
  const auto numContacts = static_cast<std::size_t>(std::count_if(
      m_pairs.begin(), m_pairs.end(), [](const Pair& pair) { return pair.getNumPoints() > 0; }));
  while (m_contactRows.size() < numContacts)
    m_contactRows.emplace_back(ContactRows::instance().storage->createInstance());
  while (m_points.size() < m_patch.size())
    m_points.emplace_back(ContactPointRows::instance().storage->createInstance());
  releaseMaterials();
  contacts.clear();
  m_known.clear();
  const ContactRows& rows = ContactRows::instance();
  for (const Pair& pair : m_pairs) {
    if (pair.getNumPoints() == 0) continue;
    const GeometryContact contact = m_contactRows[contacts.size()];
    const kel::UInt32 row = contact.getId();
    rows.geometry1[row] = pair.first;
    rows.geometry2[row] = pair.second;
    rows.points[row] = &m_points[pair.beginPoints];
    rows.numPoints[row] = static_cast<kel::UInt32>(pair.getNumPoints());
    rows.enabled[row] = true;
    contacts.push_back(contact);
    for (std::size_t i = pair.beginPoints; i < pair.endPoints; ++i) {
      m_known.push_back(
          {toFrameOf(*pair.first, m_patch[i].onFirst), toFrameOf(*pair.second, m_patch[i].onSecond), Vec3()});
      m_known.back().impulse = findImpulse(pair, i);
      writePoint(m_points[i].getId(), m_patch[i], pair, m_known.back().impulse);
    }
  }
}

Vec3 Space::Detector::findImpulse(const Pair& pair, std::size_t index) const
{
  if (!pair.old) return {};
  if (!pair.hasMoved) return m_oldPoints[pair.old->beginPoints + index - pair.beginPoints].impulse;
  const KnownPoint& point = m_known[index];
  Vec3 impulse;
  kel::Real nearest = std::pow(SAME_POINT * pair.size, 2);
  for (std::size_t i = pair.old->beginPoints; i < pair.old->endPoints; ++i) {
    const KnownPoint& before = m_oldPoints[i];
    const kel::Real distance2 =
        std::min(before.onFirst.distance2(point.onFirst), before.onSecond.distance2(point.onSecond));
    if (distance2 >= nearest) continue;
    nearest = distance2;
    impulse = before.impulse;
  }
  return impulse;
}

void Space::Detector::releaseMaterials()
{
  for (const GeometryContact& row : m_contactRows) ContactRows::instance().setMaterial(row.getId(), nullptr);
}

void Space::Detector::writePoint(kel::Index row, const PatchPoint& point, const Pair& pair,
                                 const Vec3& impulse)
{
  const ContactPointRows& rows = ContactPointRows::instance();
  Vec3 u;
  Vec3 v;
  kel::FrictionModel::calculateTangentPlane(point.normal, u, v);
  rows.point[row] = (point.onFirst + point.onSecond) * 0.5;
  rows.normal[row] = Vec3f(point.normal);
  rows.tangentU[row] = Vec3f(u);
  rows.tangentV[row] = Vec3f(v);
  rows.velocity[row] = Vec3f(surfaceVelocity(*pair.first) - surfaceVelocity(*pair.second));
  rows.localForce[row] = Vec3();
  rows.impulse[row] = impulse;
  rows.depth[row] = -point.distance;
  rows.area[row] = rows.boundingForce[row] = 0;
  rows.enabled[row] = true;
}

} // namespace kelCollide
