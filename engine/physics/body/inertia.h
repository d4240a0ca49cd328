#pragma once
#include "kel/SPDMatrix3x3.h"

namespace kel {

/// The inertia of a part in the axes and about a point of the whole. The part has its inertia about its own
/// centre, a mass, and a transform to the whole.
SPDMatrix3x3 transformInertia(const SPDMatrix3x3& inertia, Real mass, const Vec3& center,
                              const AffineMatrix4x4& transform, const Vec3& point);

} // namespace kel
