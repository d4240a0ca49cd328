#pragma once
#include "collision/BoxPlaneCollider.h"
#include "collision/bulletShapes.h"
#include "kelCollide/Space.h"
#include <BulletCollision/btBulletCollisionCommon.h>
#include <map>

namespace kelCollide {

/// The collision library's view of a space: one collision object a geometry.
class Space::Detector
{
public:
  explicit Detector(BroadPhaseAlgorithm algorithm);
  Detector(const Detector&) = delete;
  Detector& operator=(const Detector&) = delete;
  ~Detector();

  void add(Geometry& geometry);
  void remove(Geometry& geometry);
  /// Takes over the place and the form of a geometry where they have changed.
  void refresh(Geometry& geometry);
  void findPairs();
  /// Finds the contacts of the pairs and writes them to rows.
  void findContacts(std::vector<GeometryContact>& contacts);

private:
  struct Item
  {
    BulletShape shape;
    btCollisionObject object;
    kel::UInt32 shapeChanges = 0;
    kel::UInt32 shapeModifiedCount = 0;
  };

  static void nearCallback(btBroadphasePair& pair, btCollisionDispatcher& dispatcher,
                           const btDispatcherInfo& info);
  void insert(Geometry& geometry, Item& item);
  /// A manifold with points, and the places in the space of its two geometries, the earlier one first.
  struct Touching
  {
    kel::UInt32 first;
    kel::UInt32 second;
    btPersistentManifold* manifold;
    bool swapped; // its first body is the later geometry
  };
  std::vector<Touching> findTouching();
  void reserveRows(std::size_t numContacts, std::size_t numPoints);
  void releaseMaterials();
  static void writePoint(kel::Index row, btManifoldPoint& source, GeometryContact contact, bool swapped);

  btDefaultCollisionConfiguration m_configuration;
  btCollisionDispatcher m_dispatcher;
  BoxPlaneCollider m_boxPlaneCollider;
  std::unique_ptr<btBroadphaseInterface> m_broadphase;
  btCollisionWorld m_world;
  std::map<kel::UInt32, Item> m_items;        // by the geometry's order in the space
  std::vector<GeometryContact> m_contactRows; // more than the last update needed, maybe
  std::vector<ContactPoint> m_points;         // likewise; those of one contact side by side
};

} // namespace kelCollide
