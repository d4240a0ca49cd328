#include "collision/narrow/Patch.h"
#include <algorithm>
#include <array>

namespace kelCollide {

using kel::Real;
using kel::Vec3;

namespace {

using Iterator = Patch::iterator;

template <class Measure> Iterator greatest(Iterator begin, Iterator end, Measure measure)
{
  return std::max_element(begin, end,
                          [&](const PatchPoint& a, const PatchPoint& b) { return measure(a) < measure(b); });
}

Iterator mergeNear(Iterator begin, Iterator end, Real tolerance)
{
  Iterator last = begin;
  for (Iterator point = begin; point != end; ++point) {
    const Iterator same = std::find_if(begin, last, [&](const PatchPoint& kept) {
      return kept.onFirst.distance2(point->onFirst) <= tolerance * tolerance;
    });
    if (same == last)
      *last++ = *point;
    else if (point->distance < same->distance)
      *same = *point;
  }
  return last;
}

/// Moves the points that stay to the front, in the order in which they were: the solver goes by it.
Iterator keepFour(Iterator begin, Iterator end, Real tolerance)
{
  Vec3 sum;
  for (Iterator point = begin; point != end; ++point) sum += point->onFirst;
  const Vec3 middle = sum / static_cast<Real>(end - begin);
  const auto outmost = greatest(begin, end, [&](const PatchPoint& p) { return p.onFirst.distance2(middle); });
  const Vec3 origin = outmost->onFirst;
  const auto furthest =
      greatest(begin, end, [&](const PatchPoint& p) { return p.onFirst.distance2(origin); });
  const Vec3 across = cross(outmost->normal, furthest->onFirst - origin);
  std::array<Iterator, 4> kept = {outmost, furthest};
  auto next = kept.begin() + 2;
  // The points furthest to either side of the line through the first two.
  for (const Real sign : {1.0, -1.0}) {
    const auto side = [&](const PatchPoint& p) { return sign * (across * (p.onFirst - origin)); };
    const Iterator best = greatest(begin, end, side);
    if (side(*best) > tolerance * across.length()) *next++ = best;
  }
  const auto deepest = greatest(begin, end, [](const PatchPoint& p) { return -p.distance; });
  const auto nearest = std::min_element(kept.begin(), next, [&](Iterator a, Iterator b) {
    return a->onFirst.distance2(deepest->onFirst) < b->onFirst.distance2(deepest->onFirst);
  });
  if ((*nearest)->distance > deepest->distance + tolerance) *nearest = deepest;
  Iterator last = begin;
  for (Iterator point = begin; point != end; ++point)
    if (std::find(kept.begin(), next, point) != next) *last++ = *point;
  return last;
}

} // namespace

void reducePatch(Patch& patch, std::size_t begin, Real tolerance)
{
  const Iterator first = patch.begin() + static_cast<std::ptrdiff_t>(begin);
  const Iterator last = mergeNear(first, patch.end(), tolerance);
  patch.erase(last - first <= 2 ? last : keepFour(first, last, tolerance), patch.end());
}

void reduceByNormals(Patch& patch, std::size_t begin, Real tolerance)
{
  constexpr Real sameDirection = 0.9998; // cosine of about one degree
  Patch rest(patch.begin() + static_cast<std::ptrdiff_t>(begin), patch.end());
  patch.resize(begin);
  while (!rest.empty()) {
    const Vec3 normal = rest.front().normal;
    const auto others = std::stable_partition(rest.begin(), rest.end(), [&](const PatchPoint& point) {
      return point.normal * normal > sameDirection;
    });
    // The first is of its own group, whatever rounding has made of its normal.
    const auto groupEnd = std::max(others, rest.begin() + 1);
    const std::size_t groupBegin = patch.size();
    patch.insert(patch.end(), rest.begin(), groupEnd);
    rest.erase(rest.begin(), groupEnd);
    reducePatch(patch, groupBegin, tolerance);
  }
}

void swapSides(Patch& patch, std::size_t begin)
{
  for (std::size_t i = begin; i < patch.size(); ++i) {
    std::swap(patch[i].onFirst, patch[i].onSecond);
    patch[i].normal = -patch[i].normal;
  }
}

} // namespace kelCollide
