#include "collision/GeometryRows.h"
#include "kelData/EntityLayout.h"

namespace kelCollide {

const GeometryRows& GeometryRows::instance()
{
  static const auto* rows = new GeometryRows;
  return *rows;
}

GeometryRows::GeometryRows()
{
  kelData::EntityLayout layout("Geometry");
  layout.column("transform", transform);
  layout.column("surfaceVelocity", surfaceVelocity);
  layout.column("bound", bound);
  layout.column("flags", flags, kel::UInt32(ENABLED | COLLISIONS));
  storage = layout.createStorage();
}

} // namespace kelCollide
