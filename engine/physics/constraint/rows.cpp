#include "constraint/rows.h"

namespace kel {

namespace {

const Vec3& anchor(const AttachmentPair& pair, std::size_t side)
{
  return pair.getAttachment(side)->get(Attachment::ANCHOR_POS);
}

Vec3 center(const AttachmentPair& pair, std::size_t side)
{
  return anchor(pair, side) - pair.getAttachment(side)->get(Attachment::CM_TO_ANCHOR_POS);
}

void setBodies(ConstraintRow& row, const AttachmentPair& pair)
{
  for (std::size_t side = 0; side < 2; ++side) row.bodies[side] = pair.getAttachment(side)->getRigidBody();
}

} // namespace

void fillLinear(ConstraintRow& row, const AttachmentPair& pair, const Vec3& direction, const Vec3& point1,
                const Vec3& point2)
{
  setBodies(row, pair);
  row.linear[0] = direction;
  row.linear[1] = -direction;
  row.angular[0] = cross(point1 - center(pair, 0), direction);
  row.angular[1] = cross(direction, point2 - center(pair, 1));
}

void fillLinear(ConstraintRow& row, const AttachmentPair& pair, const Vec3& direction)
{
  fillLinear(row, pair, direction, anchor(pair, 0), anchor(pair, 0));
}

void fillAngular(ConstraintRow& row, const AttachmentPair& pair, const Vec3& axis)
{
  setBodies(row, pair);
  row.angular[0] = axis;
  row.angular[1] = -axis;
}

} // namespace kel
