#pragma once
#include "kel/Name.h"
#include "kel/Referenced.h"
#include "kel/Types.h"
#include <set>
#include <utility>
#include <vector>

namespace kelCollide {

class Geometry;

/// Tells which groups of geometries do not collide with each other. A group has a number or a name, and
/// exists as soon as it is mentioned.
class CollisionGroupManager : public kel::Referenced
{
public:
  /// A group, by its number or its name, as geometries keep it.
  using Group = kel::UInt64;
  static Group groupOf(kel::UInt32 number) { return number; }
  static Group groupOf(const kel::Name& name);

  CollisionGroupManager() = default;
  CollisionGroupManager(const CollisionGroupManager&) = delete;
  CollisionGroupManager& operator=(const CollisionGroupManager&) = delete;

  /// A number from 2^31 on that this has not given before.
  kel::UInt32 getUniqueGroupID() { return m_nextId++; }
  /// Lets geometries of two groups collide or not; a group may be both. All do at first.
  void setEnablePair(Group first, Group second, bool enable);
  bool getEnablePair(Group first, Group second) const;
  /// Whether no group of the one is disabled with a group of the other.
  bool canCollide(const Geometry& first, const Geometry& second) const;

protected:
  ~CollisionGroupManager() override = default;

private:
  std::set<std::pair<Group, Group>> m_disabled; // the smaller one first
  kel::UInt32 m_nextId = 0x80000000;
};

} // namespace kelCollide
