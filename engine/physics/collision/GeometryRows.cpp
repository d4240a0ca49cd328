#include "collision/GeometryRows.h"
#include "kelData/EntityLayout.h"

namespace kelCollide {

GeometryRows::GeometryRows()
{
  kelData::EntityLayout layout("Physics.Geometry");
  layout.readOnlyColumn("transform", transform);
  layout.column("surfaceVelocity", surfaceVelocity);
  layout.readOnlyColumn("bound", bound);
  layout.readOnlyColumn("flags", flags, kel::UInt32(ENABLED | COLLISIONS));
  storage = layout.createStorage();
}

} // namespace kelCollide
