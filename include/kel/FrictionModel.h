#pragma once
#include "kel/Referenced.h"
#include "kel/Vec3.h"
#include "kelStream/Serializable.h"

namespace kelCollide {
class Geometry;
}

namespace kel {

/// Decides in which plane friction acts at a contact point and what bounds it. The solver calls it from one
/// thread at a time.
class FrictionModel : public Referenced, public virtual kelStream::Serializable
{
public:
  /// Which solver treats the normal forces and the friction of a contact.
  enum SolveType
  {
    NOT_DEFINED = 0,         ///< as `SPLIT`
    DIRECT = 1,              ///< both exactly
    ITERATIVE = 2,           ///< both by iteration
    SPLIT = 3,               ///< normal forces exactly, friction by iteration
    DIRECT_AND_ITERATIVE = 4 ///< both exactly, then once more by iteration
  };
  /// What a model does while a step is solved, as bits.
  enum CallbackMask
  {
    NONE = 0,
    INITIALIZE = 1,          ///< gives bounds before the solution
    SCALE_BOUNDS = 2,        ///< bounds follow the normal force
    ITERATIVE_PROJECTION = 4 ///< both directions are bounded together
  };

  /// A number of `SolveType`, which is not tested.
  void setSolveType(int type) { m_solveType = type; }
  int getSolveType() const { return m_solveType; }
  /// Bits of `CallbackMask`.
  int getCallbackMask() const { return m_callbackMask; }
  /// Whether a direct solution has to ask for bounds while it is found.
  bool needsNlmcpCallbacks() const
  {
    return (m_callbackMask & SCALE_BOUNDS) && (m_solveType == DIRECT || m_solveType == DIRECT_AND_ITERATIVE);
  }

  /// Finds two unit vectors that make a right-handed system (u, v, normal) with a contact's normal; u is the
  /// primary direction of friction. World coordinates; the depth of penetration in m.
  virtual void calculateTangentPlane(const kelCollide::Geometry* geometry1,
                                     const kelCollide::Geometry* geometry2, const Vec3& point,
                                     const Vec3& normal, Real depth, Vec3& u, Vec3& v) const;
  /// The same for a normal alone: what the models answer unless they know better.
  static void calculateTangentPlane(const Vec3& normal, Vec3& u, Vec3& v);
  String getClassName() const override { return "FrictionModel"; }

protected:
  FrictionModel(SolveType type, int callbackMask) : m_solveType(type), m_callbackMask(callbackMask) {}
  ~FrictionModel() override = default;

private:
  int m_solveType;
  int m_callbackMask;
};

} // namespace kel
