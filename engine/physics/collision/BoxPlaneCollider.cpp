#include "collision/BoxPlaneCollider.h"
#include <BulletCollision/CollisionDispatch/btActivatingCollisionAlgorithm.h>
#include <BulletCollision/CollisionDispatch/btCollisionCreateFunc.h>
#include <BulletCollision/CollisionDispatch/btCollisionDispatcher.h>
#include <BulletCollision/CollisionDispatch/btCollisionObjectWrapper.h>
#include <BulletCollision/CollisionShapes/btBoxShape.h>
#include <BulletCollision/CollisionShapes/btStaticPlaneShape.h>
#include <algorithm>
#include <array>

namespace kelCollide {

namespace {

struct Corner
{
  btScalar height = 0; // above the plane
  btVector3 position;
  int number = 0;
};

/// The corners of the box, the lowest first.
std::array<Corner, 8> sortedCorners(const btCollisionObjectWrapper& box, const btVector3& normal,
                                    btScalar constant)
{
  const btVector3 half = static_cast<const btBoxShape*>(box.getCollisionShape())->getHalfExtentsWithMargin();
  std::array<Corner, 8> corners;
  for (int i = 0; i < 8; ++i) {
    const btVector3 local(i & 1 ? half.x() : -half.x(), i & 2 ? half.y() : -half.y(),
                          i & 4 ? half.z() : -half.z());
    const btVector3 position = box.getWorldTransform() * local;
    corners[static_cast<std::size_t>(i)] = {normal.dot(position) - constant, position, i};
  }
  std::sort(corners.begin(), corners.end(), [](const Corner& a, const Corner& b) {
    return a.height < b.height || (a.height == b.height && a.number < b.number);
  });
  return corners;
}

class BoxPlaneAlgorithm : public btActivatingCollisionAlgorithm
{
public:
  BoxPlaneAlgorithm(const btCollisionAlgorithmConstructionInfo& info, const btCollisionObjectWrapper* first,
                    const btCollisionObjectWrapper* second, bool planeFirst)
      : btActivatingCollisionAlgorithm(info, first, second), m_manifold(info.m_manifold),
        m_ownsManifold(!info.m_manifold), m_planeFirst(planeFirst)
  {
    if (m_ownsManifold)
      m_manifold = m_dispatcher->getNewManifold(first->getCollisionObject(), second->getCollisionObject());
  }
  BoxPlaneAlgorithm(const BoxPlaneAlgorithm&) = delete;
  BoxPlaneAlgorithm& operator=(const BoxPlaneAlgorithm&) = delete;
  ~BoxPlaneAlgorithm() override
  {
    if (m_ownsManifold) m_dispatcher->releaseManifold(m_manifold);
  }

  void processCollision(const btCollisionObjectWrapper* first, const btCollisionObjectWrapper* second,
                        const btDispatcherInfo&, btManifoldResult*) override
  {
    const btCollisionObjectWrapper& box = m_planeFirst ? *second : *first;
    const btTransform& planeTransform = (m_planeFirst ? first : second)->getWorldTransform();
    const auto* plane =
        static_cast<const btStaticPlaneShape*>((m_planeFirst ? first : second)->getCollisionShape());
    const btVector3 normal = planeTransform.getBasis() * plane->getPlaneNormal();
    const btScalar constant = plane->getPlaneConstant() + normal.dot(planeTransform.getOrigin());

    std::array<btManifoldPoint, MAX_POINTS> old;
    const int numOld = m_manifold->getNumContacts();
    for (int i = 0; i < numOld; ++i) old[static_cast<std::size_t>(i)] = m_manifold->getContactPoint(i);
    m_manifold->clearManifold();

    const bool boxIsA = m_manifold->getBody0() == box.getCollisionObject();
    const auto corners = sortedCorners(box, normal, constant);
    for (std::size_t i = 0; i < MAX_POINTS; ++i) {
      if (corners[i].height > m_manifold->getContactBreakingThreshold()) break;
      btManifoldPoint point = makePoint(corners[i], normal, boxIsA);
      keepImpulses(point, old, numOld);
      m_manifold->addManifoldPoint(point);
    }
  }

  btScalar calculateTimeOfImpact(btCollisionObject*, btCollisionObject*, const btDispatcherInfo&,
                                 btManifoldResult*) override
  {
    return 1;
  }

  void getAllContactManifolds(btManifoldArray& manifolds) override
  {
    if (m_ownsManifold) manifolds.push_back(m_manifold);
  }

private:
  static constexpr std::size_t MAX_POINTS = 4;

  /// The point of a corner, with the normal on B.
  btManifoldPoint makePoint(const Corner& corner, const btVector3& normal, bool boxIsA) const
  {
    const btVector3 onPlane = corner.position - normal * corner.height;
    const btVector3& onA = boxIsA ? corner.position : onPlane;
    const btVector3& onB = boxIsA ? onPlane : corner.position;
    btManifoldPoint point(m_manifold->getBody0()->getWorldTransform().invXform(onA),
                          m_manifold->getBody1()->getWorldTransform().invXform(onB),
                          boxIsA ? normal : -normal, corner.height);
    point.m_positionWorldOnA = onA;
    point.m_positionWorldOnB = onB;
    point.m_index0 = corner.number;
    return point;
  }

  /// Takes over what the point of the same corner carried before.
  static void keepImpulses(btManifoldPoint& point, const std::array<btManifoldPoint, MAX_POINTS>& old,
                           int numOld)
  {
    for (int i = 0; i < numOld; ++i) {
      const btManifoldPoint& before = old[static_cast<std::size_t>(i)];
      if (before.m_index0 != point.m_index0) continue;
      point.m_appliedImpulse = before.m_appliedImpulse;
      point.m_appliedImpulseLateral1 = before.m_appliedImpulseLateral1;
      point.m_appliedImpulseLateral2 = before.m_appliedImpulseLateral2;
    }
  }

  btPersistentManifold* m_manifold;
  bool m_ownsManifold;
  bool m_planeFirst;
};

struct Factory : public btCollisionAlgorithmCreateFunc
{
  explicit Factory(bool planeFirst) : m_planeFirst(planeFirst) {}

  btCollisionAlgorithm* CreateCollisionAlgorithm(btCollisionAlgorithmConstructionInfo& info,
                                                 const btCollisionObjectWrapper* first,
                                                 const btCollisionObjectWrapper* second) override
  {
    void* memory = info.m_dispatcher1->allocateCollisionAlgorithm(sizeof(BoxPlaneAlgorithm));
    return new (memory) BoxPlaneAlgorithm(info, first, second, m_planeFirst);
  }

private:
  bool m_planeFirst;
};

} // namespace

BoxPlaneCollider::BoxPlaneCollider(btCollisionDispatcher& dispatcher)
    : m_boxPlane(new Factory(false)), m_planeBox(new Factory(true))
{
  dispatcher.registerCollisionCreateFunc(BOX_SHAPE_PROXYTYPE, STATIC_PLANE_PROXYTYPE, m_boxPlane.get());
  dispatcher.registerCollisionCreateFunc(STATIC_PLANE_PROXYTYPE, BOX_SHAPE_PROXYTYPE, m_planeBox.get());
}

BoxPlaneCollider::~BoxPlaneCollider() = default;

} // namespace kelCollide
