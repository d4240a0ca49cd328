#pragma once
#include "kel/BoxFrictionModel.h"
#include "kel/IterativeProjectedConeFriction.h"
#include "kelLua/LuaCallback.h"

namespace kel {

/// A `BoxFrictionModel` whose answers a script may give: `calculateTangentPlane` with two vectors,
/// `calculateNormalForce` with a number. Each function gets the model first, then the arguments of the
/// engine's function; without one the engine answers. So do the adapters below.
class LuaBoxFrictionModel : public BoxFrictionModel, public virtual kelLua::LuaCallback
{
public:
  explicit LuaBoxFrictionModel(SolveType type = SPLIT);

  using FrictionModel::calculateTangentPlane;
  void calculateTangentPlane(const kelCollide::Geometry* geometry1, const kelCollide::Geometry* geometry2,
                             const Vec3& point, const Vec3& normal, Real depth, Vec3& u,
                             Vec3& v) const override;
  Real calculateNormalForce(const kelCollide::Geometry* geometry1, const kelCollide::Geometry* geometry2,
                            const Vec3& point, const Vec3& normal, Real depth, Real lastNormalForce,
                            std::size_t numPoints) const override;

protected:
  ~LuaBoxFrictionModel() override = default;
};

/// A `ScaleBoxFrictionModel` whose `calculateTangentPlane` a script may write.
class LuaScaleBoxFrictionModel : public ScaleBoxFrictionModel, public virtual kelLua::LuaCallback
{
public:
  explicit LuaScaleBoxFrictionModel(SolveType type = SPLIT);

  using FrictionModel::calculateTangentPlane;
  void calculateTangentPlane(const kelCollide::Geometry* geometry1, const kelCollide::Geometry* geometry2,
                             const Vec3& point, const Vec3& normal, Real depth, Vec3& u,
                             Vec3& v) const override;

protected:
  ~LuaScaleBoxFrictionModel() override = default;
};

/// An `IterativeProjectedConeFriction` whose `calculateTangentPlane` a script may write.
class LuaIterativeProjectedConeFriction : public IterativeProjectedConeFriction,
                                          public virtual kelLua::LuaCallback
{
public:
  explicit LuaIterativeProjectedConeFriction(SolveType type = SPLIT);

  using FrictionModel::calculateTangentPlane;
  void calculateTangentPlane(const kelCollide::Geometry* geometry1, const kelCollide::Geometry* geometry2,
                             const Vec3& point, const Vec3& normal, Real depth, Vec3& u,
                             Vec3& v) const override;

protected:
  ~LuaIterativeProjectedConeFriction() override = default;
};

} // namespace kel
