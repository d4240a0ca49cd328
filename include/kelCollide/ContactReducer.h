#pragma once
#include "kel/Vector.h"
#include "kelCollide/ContactPoint.h"

namespace kel {
class Frame;
}

namespace kelCollide {

/// Thins out contact points that say much the same.
class ContactReducer
{
public:
  /// Lays bins over the box around the points and over their normals, `binResolution` an axis (0 counts as
  /// 1), along the axes of a frame or, for null, of the world, and leaves the deepest point of each bin; of
  /// those that are as deep but for `tolerance`, in m, the one furthest from the middle of all. Points less
  /// than that apart share a bin. The others keep their order. Returns how many were taken out.
  static std::size_t reduce(kel::Vector<ContactPoint*>& points, std::size_t binResolution,
                            const kel::Frame* frame = nullptr, kel::Real tolerance = 1e-6);
};

} // namespace kelCollide
