#include "kel/entityModels.h"
#include "body/BodyRows.h"
#include "collision/ContactRows.h"
#include "collision/GeometryRows.h"

namespace kel::Physics {

void makeEntityModels()
{
  BodyRows::instance();
  kelCollide::GeometryRows::instance();
  kelCollide::ContactRows::instance();
  kelCollide::ContactPointRows::instance();
}

} // namespace kel::Physics
