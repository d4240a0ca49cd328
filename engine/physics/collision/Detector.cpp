#include "collision/Detector.h"
#include "collision/ContactRows.h"
#include "collision/GeometryRows.h"
#include "kel/FrictionModel.h"
#include "kel/Logger.h"
#include "kel/RigidBody.h"
#include <BulletCollision/BroadphaseCollision/btAxisSweep3.h>
#include <algorithm>

namespace kelCollide {

using kel::Vec3;
using kel::Vec3f;

namespace {

/// What does not fit comes from the heap. The library's own pools take megabytes in every simulation.
btDefaultCollisionConstructionInfo smallPools()
{
  btDefaultCollisionConstructionInfo info;
  info.m_defaultMaxPersistentManifoldPoolSize = info.m_defaultMaxCollisionAlgorithmPoolSize = 64;
  return info;
}

std::unique_ptr<btBroadphaseInterface> makeBroadphase(Space::BroadPhaseAlgorithm algorithm)
{
  if (algorithm == Space::HIERARCHICAL_GRID) return std::make_unique<btDbvtBroadphase>();
  constexpr btScalar reach = 10000; // m; what lies beyond is found, slowly
  constexpr unsigned maxObjects = 65536;
  return std::make_unique<bt32BitAxisSweep3>(btVector3(-reach, -reach, -reach),
                                             btVector3(reach, reach, reach), maxObjects);
}

Geometry& geometryOf(const btCollisionObject& object)
{
  return *static_cast<Geometry*>(object.getUserPointer());
}

bool isDynamic(const Geometry& geometry)
{
  const kel::RigidBody* body = geometry.getRigidBody();
  return body && body->getMotionControl() == kel::RigidBody::DYNAMICS;
}

/// Whether a shape has a form and a place. What a script has sent out of all bounds would touch everything.
bool canPlace(const Shape& shape, const BulletShape& form)
{
  const kel::AffineMatrix4x4& place = shape.getTransform();
  kel::Real sum = 0;
  for (std::size_t row = 0; row < 4; ++row)
    for (std::size_t column = 0; column < 3; ++column) sum += 0 * place(row, column);
  return form.whole && sum == 0; // 0 times what is not finite is a NaN
}

void warnOfLoss(const Geometry& geometry)
{
  const kel::RigidBody* body = geometry.getRigidBody();
  kel::logWarning("Geometry '" + geometry.getName() + (body ? "' of body '" + body->getName() : "") +
                  "' collides with nothing: its size or its place is no finite number.");
}

Vec3 surfaceVelocity(const Geometry& geometry)
{
  return geometry.getTransform().transformVector(Vec3(geometry.getSurfaceVelocity()));
}

} // namespace

Space::Detector::Detector(BroadPhaseAlgorithm algorithm)
    : m_configuration(smallPools()), m_dispatcher(&m_configuration), m_boxPlaneCollider(m_dispatcher),
      m_broadphase(makeBroadphase(algorithm)), m_world(&m_dispatcher, m_broadphase.get(), &m_configuration)
{
  m_dispatcher.setNearCallback(nearCallback);
}

Space::Detector::~Detector()
{
  for (auto& [order, item] : m_items)
    if (item.object.getBroadphaseHandle()) m_world.removeCollisionObject(&item.object);
  releaseMaterials();
  for (const GeometryContact& row : m_contactRows) ContactRows::instance().storage->destroyInstance(row);
  for (const ContactPoint& row : m_points) ContactPointRows::instance().storage->destroyInstance(row);
}

void Space::Detector::add(Geometry& geometry) { insert(geometry, m_items[geometry.m_spaceOrder]); }

void Space::Detector::insert(Geometry& geometry, Item& item)
{
  if (item.object.getBroadphaseHandle()) m_world.removeCollisionObject(&item.object);
  const Shape* shape = geometry.getShape();
  item.shape = shape ? makeBulletShape(*shape) : BulletShape();
  item.shapeChanges = geometry.m_shapeChanges;
  item.shapeModifiedCount = shape ? shape->getModifiedCount() : 0;
  geometry.m_placeChanged = false;
  geometry.updateBoundingVolume();
  if (!shape) return;
  if (!canPlace(*shape, item.shape)) {
    if (!shape->isGroup() || item.shape.whole) warnOfLoss(geometry);
    return;
  }
  item.object.setCollisionShape(item.shape.whole);
  item.object.setWorldTransform(toBullet(shape->getTransform()));
  item.object.setUserPointer(&geometry);
  item.object.setUserIndex(static_cast<int>(geometry.m_row));
  // The world refuses unbounded boxes of objects that are not static.
  item.object.setCollisionFlags(shape->getType() == Shape::PLANE ? btCollisionObject::CF_STATIC_OBJECT : 0);
  m_world.addCollisionObject(&item.object, btBroadphaseProxy::DefaultFilter, btBroadphaseProxy::AllFilter);
}

void Space::Detector::remove(Geometry& geometry)
{
  Item& item = m_items.at(geometry.m_spaceOrder);
  if (item.object.getBroadphaseHandle()) m_world.removeCollisionObject(&item.object);
  m_items.erase(geometry.m_spaceOrder);
}

void Space::Detector::refresh(Geometry& geometry)
{
  Item& item = m_items.at(geometry.m_spaceOrder);
  const Shape* shape = geometry.getShape();
  const bool isPlaced = item.object.getBroadphaseHandle();
  if (geometry.m_shapeChanges != item.shapeChanges ||
      (shape && shape->getModifiedCount() != item.shapeModifiedCount)) {
    insert(geometry, item);
  } else if (shape && geometry.m_placeChanged) {
    geometry.m_placeChanged = false;
    geometry.updateBoundingVolume();
    if (canPlace(*shape, item.shape) != isPlaced) {
      insert(geometry, item);
    } else if (isPlaced) {
      item.object.setWorldTransform(toBullet(shape->getTransform()));
      m_world.updateSingleAabb(&item.object);
    }
  }
}

void Space::Detector::findPairs() { m_world.computeOverlappingPairs(); }

void Space::Detector::nearCallback(btBroadphasePair& pair, btCollisionDispatcher& dispatcher,
                                   const btDispatcherInfo& info)
{
  const Geometry& first = geometryOf(*static_cast<btCollisionObject*>(pair.m_pProxy0->m_clientObject));
  const Geometry& second = geometryOf(*static_cast<btCollisionObject*>(pair.m_pProxy1->m_clientObject));
  const bool wanted = isDynamic(first) || isDynamic(second) || first.isSensor() || second.isSensor();
  if (wanted && first.getSpace()->canCollide(&first, &second)) {
    btCollisionDispatcher::defaultNearCallback(pair, dispatcher, info);
  } else if (pair.m_algorithm) {
    // Points of earlier steps must not live on.
    pair.m_algorithm->~btCollisionAlgorithm();
    dispatcher.freeCollisionAlgorithm(pair.m_algorithm);
    pair.m_algorithm = nullptr;
  }
}

std::vector<Space::Detector::Touching> Space::Detector::findTouching()
{
  std::vector<Touching> touching;
  for (int i = 0; i < m_dispatcher.getNumManifolds(); ++i) {
    btPersistentManifold* manifold = m_dispatcher.getManifoldByIndexInternal(i);
    if (manifold->getNumContacts() == 0) continue;
    const kel::UInt32 order0 = geometryOf(*manifold->getBody0()).m_spaceOrder;
    const kel::UInt32 order1 = geometryOf(*manifold->getBody1()).m_spaceOrder;
    touching.push_back({std::min(order0, order1), std::max(order0, order1), manifold, order0 > order1});
  }
  std::stable_sort(touching.begin(), touching.end(), [](const Touching& a, const Touching& b) {
    return a.first != b.first ? a.first < b.first : a.second < b.second;
  });
  return touching;
}

void Space::Detector::findContacts(std::vector<GeometryContact>& contacts)
{
  m_dispatcher.dispatchAllCollisionPairs(m_broadphase->getOverlappingPairCache(), m_world.getDispatchInfo(),
                                         &m_dispatcher);
  const std::vector<Touching> touching = findTouching();
  std::size_t numPoints = 0;
  for (const Touching& t : touching) numPoints += static_cast<std::size_t>(t.manifold->getNumContacts());
  reserveRows(touching.size(), numPoints);
  releaseMaterials();

  contacts.clear();
  const ContactRows& rows = ContactRows::instance();
  std::size_t nextPoint = 0;
  for (std::size_t i = 0; i < touching.size(); ++i) {
    const Touching& t = touching[i];
    const bool samePair = i > 0 && touching[i - 1].first == t.first && touching[i - 1].second == t.second;
    if (!samePair) {
      const GeometryContact contact = m_contactRows[contacts.size()];
      const kel::UInt32 row = contact.getId();
      rows.geometry1[row] = &geometryOf(*(t.swapped ? t.manifold->getBody1() : t.manifold->getBody0()));
      rows.geometry2[row] = &geometryOf(*(t.swapped ? t.manifold->getBody0() : t.manifold->getBody1()));
      rows.points[row] = &m_points[nextPoint];
      rows.numPoints[row] = 0;
      rows.enabled[row] = true;
      contacts.push_back(contact);
    }
    for (int k = 0; k < t.manifold->getNumContacts(); ++k)
      writePoint(m_points[nextPoint++].getId(), t.manifold->getContactPoint(k), contacts.back(), t.swapped);
    rows.numPoints[contacts.back().getId()] += static_cast<kel::UInt32>(t.manifold->getNumContacts());
  }
}

void Space::Detector::reserveRows(std::size_t numContacts, std::size_t numPoints)
{
  while (m_contactRows.size() < numContacts)
    m_contactRows.emplace_back(ContactRows::instance().storage->createInstance());
  while (m_points.size() < numPoints)
    m_points.emplace_back(ContactPointRows::instance().storage->createInstance());
}

void Space::Detector::releaseMaterials()
{
  for (const GeometryContact& row : m_contactRows) ContactRows::instance().setMaterial(row.getId(), nullptr);
}

void Space::Detector::writePoint(kel::Index row, btManifoldPoint& source, GeometryContact contact,
                                 bool swapped)
{
  const ContactPointRows& rows = ContactPointRows::instance();
  const Vec3 normal = fromBullet(source.m_normalWorldOnB) * (swapped ? -1.0 : 1.0);
  Vec3 u;
  Vec3 v;
  kel::FrictionModel::calculateTangentPlane(normal, u, v);
  rows.point[row] = fromBullet((source.getPositionWorldOnA() + source.getPositionWorldOnB()) * 0.5);
  rows.normal[row] = Vec3f(normal);
  rows.tangentU[row] = Vec3f(u);
  rows.tangentV[row] = Vec3f(v);
  rows.velocity[row] = Vec3f(surfaceVelocity(*contact.geometry(0)) - surfaceVelocity(*contact.geometry(1)));
  rows.localForce[row] = Vec3();
  rows.impulse[row] =
      Vec3(source.m_appliedImpulse, source.m_appliedImpulseLateral1, source.m_appliedImpulseLateral2);
  rows.depth[row] = -source.getDistance();
  rows.area[row] = 0;
  rows.enabled[row] = true;
  rows.source[row] = &source;
}

} // namespace kelCollide
