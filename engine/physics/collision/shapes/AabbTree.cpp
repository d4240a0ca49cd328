#include "collision/shapes/AabbTree.h"
#include "kelCollide/lineClipping.h"
#include <algorithm>

namespace kelCollide {

using kel::Real;
using kel::UInt32;
using kel::Vec3;

AabbTree::AabbTree(const std::vector<BoundingAABB>& boxes) : m_boxes(boxes)
{
  for (std::size_t i = 0; i < boxes.size(); ++i)
    if (!boxes[i].isCleared()) m_items.push_back(static_cast<UInt32>(i));
  if (!m_items.empty()) build(0, static_cast<UInt32>(m_items.size()));
}

void AabbTree::build(UInt32 first, UInt32 last)
{
  constexpr UInt32 leafSize = 4;
  const std::size_t index = m_nodes.size();
  m_nodes.emplace_back();
  BoundingAABB bound;
  for (UInt32 i = first; i < last; ++i) bound.expand(m_boxes[m_items[i]]);
  m_nodes[index].bound = bound;
  if (last - first <= leafSize) {
    m_nodes[index].first = first;
    m_nodes[index].numItems = last - first;
    return;
  }
  const std::size_t axis = (bound.max() - bound.min()).maxElement();
  const auto middle = [&](UInt32 item) { return m_boxes[item].min()[axis] + m_boxes[item].max()[axis]; };
  const UInt32 half = first + (last - first) / 2;
  std::nth_element(
      m_items.begin() + first, m_items.begin() + half, m_items.begin() + last,
      [&](UInt32 a, UInt32 b) { return middle(a) != middle(b) ? middle(a) < middle(b) : a < b; });
  build(first, half);
  m_nodes[index].first = static_cast<UInt32>(m_nodes.size());
  build(half, last);
}

template <class Meets> void AabbTree::find(Meets meets, kel::UInt32Vector& numbers) const
{
  std::vector<UInt32> found;
  std::vector<UInt32> open;
  if (!m_nodes.empty()) open.push_back(0);
  while (!open.empty()) {
    const UInt32 index = open.back();
    open.pop_back();
    const Node& node = m_nodes[index];
    if (!meets(node.bound)) continue;
    if (node.numItems == 0) {
      open.push_back(node.first);
      open.push_back(index + 1);
    }
    for (UInt32 i = node.first; i < node.first + node.numItems; ++i)
      if (meets(m_boxes[m_items[i]])) found.push_back(m_items[i]);
  }
  std::sort(found.begin(), found.end());
  for (const UInt32 number : found) numbers.push_back(number);
}

void AabbTree::findOverlaps(const BoundingAABB& bound, kel::UInt32Vector& numbers) const
{
  find([&](const BoundingAABB& box) { return box.hasOverlap(bound); }, numbers);
}

void AabbTree::findAlongSegment(const Vec3& start, const Vec3& end, kel::UInt32Vector& numbers) const
{
  find(
      [&](const BoundingAABB& box) {
        const Vec3 middle = (box.min() + box.max()) * 0.5;
        kel::Interval inside;
        return clipLineSegmentToBox(box.max() - middle, start - middle, end - middle, inside);
      },
      numbers);
}

} // namespace kelCollide
