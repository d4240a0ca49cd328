#include "collision/ContactRows.h"
#include "kel/ContactMaterial.h"
#include "kelCollide/GeometryContact.h"
#include "kelCollide/Space.h"
#include "kelData/EntityLayout.h"
#include <cmath>
#include <utility>

namespace kelCollide {

using kel::Real;
using kel::Vec3;
using kel::Vec3f;

ContactRows::ContactRows()
{
  kelData::EntityLayout layout("Physics.GeometryContact");
  layout.readOnlyColumn("geometry1", geometry1);
  layout.readOnlyColumn("geometry2", geometry2);
  layout.readOnlyColumn("points", points);
  layout.readOnlyColumn("numPoints", numPoints);
  layout.column("enabled", enabled, true);
  layout.readOnlyColumn("material", material);
  storage = layout.createStorage();
  storage->setUseInstanceTable(false);
}

void ContactRows::setMaterial(kel::Index row, kel::ContactMaterial* newMaterial) const
{
  if (newMaterial) newMaterial->reference();
  if (const kel::ContactMaterial* old = std::exchange(material[row], newMaterial)) old->unreference();
}

ContactPointRows::ContactPointRows()
{
  kelData::EntityLayout layout("Physics.ContactPoint");
  layout.column("point", point);
  layout.column("normal", normal);
  layout.column("tangentU", tangentU);
  layout.column("tangentV", tangentV);
  layout.column("velocity", velocity);
  layout.readOnlyColumn("localForce", localForce);
  layout.readOnlyColumn("impulse", impulse);
  layout.column("depth", depth);
  layout.column("area", area);
  layout.readOnlyColumn("boundingForce", boundingForce);
  layout.column("enabled", enabled, true);
  storage = layout.createStorage();
  storage->setUseInstanceTable(false);
}

namespace {
const ContactPointRows& pointRows() { return ContactPointRows::instance(); }
const ContactRows& contactRows() { return ContactRows::instance(); }
} // namespace

bool& ContactPoint::enabled() const { return pointRows().enabled[getId()]; }
Vec3& ContactPoint::point() const { return pointRows().point[getId()]; }
Real& ContactPoint::depth() const { return pointRows().depth[getId()]; }
Real& ContactPoint::area() const { return pointRows().area[getId()]; }
Vec3f& ContactPoint::normal() const { return pointRows().normal[getId()]; }
Vec3f& ContactPoint::tangentU() const { return pointRows().tangentU[getId()]; }
Vec3f& ContactPoint::tangentV() const { return pointRows().tangentV[getId()]; }
Vec3f& ContactPoint::velocity() const { return pointRows().velocity[getId()]; }
Real& ContactPoint::localForce(std::size_t component) const
{
  return pointRows().localForce[getId()][component];
}

Vec3 ContactPoint::getNormalForce() const { return Vec3(normal()) * localForce(NORMAL_FORCE); }

Vec3 ContactPoint::getTangentialForce() const
{
  return Vec3(tangentU()) * localForce(TANGENTIAL_FORCE_U) +
         Vec3(tangentV()) * localForce(TANGENTIAL_FORCE_V);
}

Real ContactPoint::getNormalForceMagnitude() const { return std::fabs(localForce(NORMAL_FORCE)); }

Real ContactPoint::getTangentialForceMagnitude() const
{
  return std::hypot(localForce(TANGENTIAL_FORCE_U), localForce(TANGENTIAL_FORCE_V));
}

Geometry* GeometryContact::geometry(std::size_t index) const
{
  return (index == 0 ? contactRows().geometry1 : contactRows().geometry2)[getId()];
}

kel::RigidBody* GeometryContact::rigidBody(std::size_t index) const
{
  return geometry(index)->getRigidBody();
}

std::size_t GeometryContact::getNumPoints() const { return contactRows().numPoints[getId()]; }

ContactPoint GeometryContact::getPoint(std::size_t index) const
{
  return contactRows().points[getId()][index];
}

void GeometryContact::setEnable(bool enable) { contactRows().enabled[getId()] = enable; }

bool GeometryContact::isEnabled() const { return contactRows().enabled[getId()]; }

kel::ContactMaterial* GeometryContact::getMaterial() const { return contactRows().material[getId()]; }

void GeometryContact::setMaterial(kel::ContactMaterial* material)
{
  contactRows().setMaterial(getId(), material);
}

} // namespace kelCollide
