#pragma once
#include "kel/AffineMatrix4x4.h"
#include "kel/Bound.h"

namespace kelCollide {

/// A box along the axes that can be empty: the empty one has its minimum above its maximum. Metres.
class BoundingAABB : public kel::Bound3
{
public:
  /// The empty box.
  BoundingAABB() { reset(); }
  BoundingAABB(const kel::Vec3& min, const kel::Vec3& max) : kel::Bound3(min, max) {}

  /// Makes the box empty.
  void reset();
  /// Whether the box is empty; looks at the first axis only.
  bool isCleared() const { return min().x() > max().x(); }
  /// Grows to hold another box.
  void expand(const kel::Bound3& other) { expand(other.min(), other.max()); }
  void expand(const kel::Vec3& otherMin, const kel::Vec3& otherMax);
  /// Grows to hold the eight corners of a transformed box.
  void expand(const kel::Bound3& other, const kel::AffineMatrix4x4& transform)
  {
    expand(other.min(), other.max(), transform);
  }
  void expand(const kel::Vec3& otherMin, const kel::Vec3& otherMax, const kel::AffineMatrix4x4& transform);

  /// Whether the boxes share a point; touching counts.
  bool hasOverlap(const BoundingAABB& other) const;
  /// Whether a point lies inside the box grown by `radius` on every side; its faces do not count.
  bool testSphereOverlap(const kel::Vec3& center, kel::Real radius) const;
};

} // namespace kelCollide
