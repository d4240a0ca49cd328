#pragma once
#include "kel/AttachmentPair.h"
#include "kel/ConstraintRow.h"

namespace kel {

/// The Jacobian of the velocity of a point of the first body against a point of the second along a direction.
/// All in world coordinates, m.
void fillLinear(ConstraintRow& row, const AttachmentPair& pair, const Vec3& direction, const Vec3& point1,
                const Vec3& point2);
/// The same for a direction that turns with the second body: both bodies are held where the first anchor is.
void fillLinear(ConstraintRow& row, const AttachmentPair& pair, const Vec3& direction);
/// The Jacobian of the angular velocity of the first body against the second about an axis.
void fillAngular(ConstraintRow& row, const AttachmentPair& pair, const Vec3& axis);

} // namespace kel
