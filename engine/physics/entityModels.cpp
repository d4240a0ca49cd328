#include "kel/entityModels.h"
#include "body/BodyRows.h"
#include "collision/ContactRows.h"
#include "collision/GeometryRows.h"
#include "material/MaterialRows.h"

namespace kel::Physics {

void makeEntityModels()
{
  BodyRows::instance();
  kelCollide::GeometryRows::instance();
  kelCollide::ContactRows::instance();
  kelCollide::ContactPointRows::instance();
  BulkMaterialRows::instance();
  SurfaceMaterialRows::instance();
  WireMaterialRows::instance();
  MaterialRows::instance();
  ContactMaterialRows::instance();
}

} // namespace kel::Physics
