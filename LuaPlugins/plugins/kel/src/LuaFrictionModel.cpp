#include "LuaFrictionModel.h"
#include "CallSite.h"
#include "kelCollide/Geometry.h"

namespace kel {

using kelCollide::Geometry;
using kelLua::CallSite;
using kelLua::ObjectArgument;
using kelLua::ValueArgument;

namespace {

const CallSite boxPlaneSite(
    "virtual void kel::LuaBoxFrictionModel::calculateTangentPlane(const kelCollide::Geometry*, const "
    "kelCollide::Geometry*, const Vec3&, const Vec3&, kel::Real, kel::Vec3&, kel::Vec3&) const");
const CallSite scaleBoxPlaneSite(
    "virtual void kel::LuaScaleBoxFrictionModel::calculateTangentPlane(const kelCollide::Geometry*, const "
    "kelCollide::Geometry*, const Vec3&, const Vec3&, kel::Real, kel::Vec3&, kel::Vec3&) const");
const CallSite
    conePlaneSite("virtual void kel::LuaIterativeProjectedConeFriction::calculateTangentPlane(const "
                  "kelCollide::Geometry*, const kelCollide::Geometry*, const Vec3&, const Vec3&, kel::Real, "
                  "kel::Vec3&, kel::Vec3&) const");
const CallSite normalForceSite(
    "virtual kel::Real kel::LuaBoxFrictionModel::calculateNormalForce(const kelCollide::Geometry*, const "
    "kelCollide::Geometry*, const Vec3&, const Vec3&, kel::Real, kel::Real, size_t) const");

const kelLua::wrap::Type& geometryType()
{
  static const auto& type = kelLua::wrap::type("kelCollide::Geometry");
  return type;
}

const kelLua::wrap::Type& vectorType()
{
  static const auto& type = kelLua::wrap::type("kel::Vec3");
  return type;
}

const kelLua::wrap::Type& constVectorType()
{
  static const auto& type = kelLua::wrap::type("const kel::Vec3");
  return type;
}

/// The tangent plane by a script's function, else by the engine's.
template <class Model>
void calculatePlane(const Model& model, const CallSite& site, const Geometry* geometry1,
                    const Geometry* geometry2, const Vec3& point, const Vec3& normal, Real depth, Vec3& u,
                    Vec3& v)
{
  if (!site.callForTwo(model, constVectorType(), u, v, ObjectArgument{geometry1, geometryType()},
                       ObjectArgument{geometry2, geometryType()}, ValueArgument{point, vectorType()},
                       ValueArgument{normal, vectorType()}, depth))
    model.FrictionModel::calculateTangentPlane(geometry1, geometry2, point, normal, depth, u, v);
}

} // namespace

LuaBoxFrictionModel::LuaBoxFrictionModel(SolveType type)
    : LuaCallback(this, "kel::LuaBoxFrictionModel::LuaBoxFrictionModel(kel::FrictionModel::SolveType)"),
      BoxFrictionModel(type)
{}

void LuaBoxFrictionModel::calculateTangentPlane(const Geometry* geometry1, const Geometry* geometry2,
                                                const Vec3& point, const Vec3& normal, Real depth, Vec3& u,
                                                Vec3& v) const
{
  calculatePlane(*this, boxPlaneSite, geometry1, geometry2, point, normal, depth, u, v);
}

Real LuaBoxFrictionModel::calculateNormalForce(const Geometry* geometry1, const Geometry* geometry2,
                                               const Vec3& point, const Vec3& normal, Real depth,
                                               Real lastNormalForce, std::size_t numPoints) const
{
  const Real fallback = BoxFrictionModel::calculateNormalForce(geometry1, geometry2, point, normal, depth,
                                                               lastNormalForce, numPoints);
  return normalForceSite.callForResult(
      *this, fallback, ObjectArgument{geometry1, geometryType()}, ObjectArgument{geometry2, geometryType()},
      ValueArgument{point, vectorType()}, ValueArgument{normal, vectorType()}, depth, lastNormalForce,
      numPoints);
}

LuaScaleBoxFrictionModel::LuaScaleBoxFrictionModel(SolveType type)
    : LuaCallback(this,
                  "kel::LuaScaleBoxFrictionModel::LuaScaleBoxFrictionModel(kel::FrictionModel::SolveType)"),
      ScaleBoxFrictionModel(type)
{}

void LuaScaleBoxFrictionModel::calculateTangentPlane(const Geometry* geometry1, const Geometry* geometry2,
                                                     const Vec3& point, const Vec3& normal, Real depth,
                                                     Vec3& u, Vec3& v) const
{
  calculatePlane(*this, scaleBoxPlaneSite, geometry1, geometry2, point, normal, depth, u, v);
}

LuaIterativeProjectedConeFriction::LuaIterativeProjectedConeFriction(SolveType type)
    : LuaCallback(this, "kel::LuaIterativeProjectedConeFriction::LuaIterativeProjectedConeFriction("
                        "kel::FrictionModel::SolveType)"),
      IterativeProjectedConeFriction(type)
{}

void LuaIterativeProjectedConeFriction::calculateTangentPlane(const Geometry* geometry1,
                                                              const Geometry* geometry2, const Vec3& point,
                                                              const Vec3& normal, Real depth, Vec3& u,
                                                              Vec3& v) const
{
  calculatePlane(*this, conePlaneSite, geometry1, geometry2, point, normal, depth, u, v);
}

} // namespace kel
