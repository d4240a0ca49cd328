#include "kelCollide/ContactReducer.h"
#include "kel/Frame.h"
#include "kelCollide/BoundingAABB.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace kelCollide {

using kel::Real;
using kel::Vec3;

namespace {

struct Candidate
{
  std::array<long, 6> bin; // of the place, of the normal
  Real depth;
  Real distance2; // from the middle
  std::size_t index;
};

/// Whether a point stands for a bin rather than another one.
bool isBetter(const Candidate& a, const Candidate& b, Real tolerance)
{
  if (std::fabs(a.depth - b.depth) > tolerance) return a.depth > b.depth;
  if (std::fabs(a.distance2 - b.distance2) > tolerance * tolerance) return a.distance2 > b.distance2;
  return a.index < b.index;
}

std::vector<Candidate> sortIntoBins(const kel::Vector<ContactPoint*>& points, std::size_t binResolution,
                                    const kel::Frame* frame, Real tolerance)
{
  const kel::AffineMatrix4x4 axes = frame ? frame->getMatrix() : kel::AffineMatrix4x4();
  const auto resolution = static_cast<long>(std::max<std::size_t>(binResolution, 1));
  std::vector<Vec3> places;
  BoundingAABB bound;
  for (const ContactPoint* point : points) {
    places.push_back(axes.transform3x3Inv(point->point() - axes.getTranslate()));
    bound.expand(places.back(), places.back());
  }
  const Vec3 size = bound.max() - bound.min();
  std::vector<Candidate> candidates;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const Vec3 normal = axes.transform3x3Inv(Vec3(points[i]->normal()));
    Candidate candidate = {{}, points[i]->depth(), 0, i};
    candidate.distance2 = (places[i] - (bound.min() + bound.max()) * 0.5).length2();
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const Real part = size[axis] > tolerance ? (places[i][axis] - bound.min()[axis]) / size[axis] : 0;
      candidate.bin[axis] =
          std::min(std::lround(std::floor(part * static_cast<Real>(resolution))), resolution - 1);
      candidate.bin[3 + axis] = std::lround(normal[axis] * static_cast<Real>(resolution) / 2);
    }
    candidates.push_back(candidate);
  }
  return candidates;
}

} // namespace

std::size_t ContactReducer::reduce(kel::Vector<ContactPoint*>& points, std::size_t binResolution,
                                   const kel::Frame* frame, Real tolerance)
{
  if (points.empty()) return 0;
  std::vector<Candidate> candidates = sortIntoBins(points, binResolution, frame, tolerance);
  std::stable_sort(candidates.begin(), candidates.end(),
                   [](const Candidate& a, const Candidate& b) { return a.bin < b.bin; });
  std::vector<bool> stays(points.size(), false);
  for (std::size_t i = 0; i < candidates.size();) {
    const Candidate* best = &candidates[i];
    for (; i < candidates.size() && candidates[i].bin == best->bin; ++i)
      if (isBetter(candidates[i], *best, tolerance)) best = &candidates[i];
    stays[best->index] = true;
  }
  std::size_t numLeft = 0;
  for (std::size_t i = 0; i < points.size(); ++i)
    if (stays[i]) points[numLeft++] = points[i];
  const std::size_t numRemoved = points.size() - numLeft;
  points.resize(numLeft);
  return numRemoved;
}

} // namespace kelCollide
