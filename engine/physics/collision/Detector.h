#pragma once
#include "collision/narrow/Patch.h"
#include "kelCollide/Space.h"
#include "solver/Workers.h"
#include <BulletCollision/BroadphaseCollision/btBroadphaseInterface.h>
#include <cstdint>
#include <map>

namespace kelCollide {

/// Finds the contacts of a space: pairs of boxes by the collision library, then the points of each pair.
class Space::Detector
{
public:
  /// Surfaces that are not further apart than `reach` have contacts.
  Detector(BroadPhaseAlgorithm algorithm, kel::Real reach);
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
    Geometry* geometry = nullptr;
    btBroadphaseProxy* proxy = nullptr; // null for what cannot collide; knows the item
    bool isLost = false;                // no place or form, of which the log tells once
    BoundingAABB bound;                 // of the geometry, when it was last refreshed
    kel::Real size = 0; // radius of the form, m, at most 1: what is small comes near when it is nearer
    kel::UInt32 shapeChanges = 0;
    kel::UInt32 shapeModifiedCount = 0;
    std::uint64_t lastMove = 0; // the update that first sees its form at its place
  };
  /// Two geometries, the one that came to the space earlier first, and their points.
  struct Pair
  {
    std::uint64_t order; // in which the geometries came to the space
    Geometry* first;     // for the length of an update
    Geometry* second;
    kel::Real size;            // of the smaller one
    bool hasMoved;             // since the update before
    const Pair* old = nullptr; // the same pair then, null if it was none
    std::size_t beginPoints = 0;
    std::size_t endPoints = 0;
    std::size_t getNumPoints() const { return endPoints - beginPoints; }
    bool operator<(const Pair& other) const { return order < other.order; }
  };
  /// A point in the frames of the geometries, and where the next solution starts from.
  struct KnownPoint
  {
    kel::Vec3 onFirst;
    kel::Vec3 onSecond;
    kel::Vec3 impulse;
  };

  void growSweep();
  void insert(Geometry& geometry, Item& item);
  void release(Item& item);
  BoundingAABB grown(const Item& item) const;
  static bool hasNewForm(const Item& item);
  /// Whether points of the geometry may be other ones than in the last update.
  bool hasMoved(const Item& item) const;
  void keepOldPoints();
  void findWantedPairs();
  void findOldPairs();
  void collidePairs();
  void collide(Pair& pair, Patch& patch) const;
  void releaseMaterials();
  void writePairs(std::vector<GeometryContact>& contacts);
  /// Where the solution of a point starts from.
  kel::Vec3 findImpulse(const Pair& pair, std::size_t point) const;
  static void writePoint(kel::Index row, const PatchPoint& point, const Pair& pair, const kel::Vec3& impulse);

  const kel::Real m_reach;
  std::size_t m_sweepRoom; // geometries that the sweep has room for; 0 for the other algorithm
  std::unique_ptr<btBroadphaseInterface> m_broadphase;
  std::map<kel::UInt32, Item> m_items; // by the geometry's order in the space
  std::vector<Pair> m_pairs;           // in order
  kel::Workers m_workers;
  std::vector<Patch> m_chunks;     // of some pairs each
  Patch m_patch;                   // of all pairs
  std::vector<KnownPoint> m_known; // of all pairs
  std::vector<Pair> m_oldPairs;    // those of the update before
  std::vector<KnownPoint> m_oldPoints;
  Patch m_oldPatch;
  std::uint64_t m_numUpdates = 0;
  std::vector<GeometryContact> m_contactRows; // more than the last update needed, maybe
  std::vector<ContactPoint> m_points;         // likewise; those of one contact side by side
};

} // namespace kelCollide
