#pragma once
#include "kel/typedContainers.h"
#include "kelCollide/BoundingAABB.h"
#include <vector>

namespace kelCollide {

/// A tree of boxes over numbered boxes.
class AabbTree
{
public:
  /// Over the boxes that are not empty.
  explicit AabbTree(const std::vector<BoundingAABB>& boxes);

  /// Adds the numbers of the boxes that overlap another one, in ascending order.
  void findOverlaps(const BoundingAABB& bound, kel::UInt32Vector& numbers) const;
  /// Adds the numbers of the boxes that a segment meets, in ascending order.
  void findAlongSegment(const kel::Vec3& start, const kel::Vec3& end, kel::UInt32Vector& numbers) const;

private:
  struct Node
  {
    BoundingAABB bound;
    kel::UInt32 first = 0;    // of the items of a leaf, or the right child; the left one is next in memory
    kel::UInt32 numItems = 0; // 0 for an inner node
  };

  void build(kel::UInt32 first, kel::UInt32 last);
  template <class Meets> void find(Meets meets, kel::UInt32Vector& numbers) const;

  std::vector<BoundingAABB> m_boxes;
  std::vector<kel::UInt32> m_items; // numbers, those of one leaf side by side
  std::vector<Node> m_nodes;
};

} // namespace kelCollide
