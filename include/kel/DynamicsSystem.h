#pragma once
#include "kel/AutoSleep.h"
#include "kel/Component.h"
#include "kel/Constraint.h"
#include "kel/RigidBody.h"
#include "kel/Solver.h"
#include "kel/TimeGovernor.h"
#include <vector>

namespace kelCollide {
class Space;
}

namespace kel {

/// The bodies of a simulation and what acts on them.
class DynamicsSystem : public Component
{
public:
  /// An empty system with steps of 1/60 s and the gravity of the earth.
  DynamicsSystem();

  /// Take a reference and add, or let go; false for null, for what is here (or, for a body, in any system)
  /// already, and for what is not here.
  bool add(RigidBody* body);
  bool remove(RigidBody* body);
  bool add(Interaction* interaction);
  bool remove(Interaction* interaction);
  bool add(Constraint* constraint);
  bool remove(Constraint* constraint);

  /// The first added of that name, null if there is none. Not owned.
  RigidBody* getRigidBody(const Name& name) const;
  Constraint* getConstraint(const Name& name) const;
  const std::vector<ref_ptr<RigidBody>>& getRigidBodies() const { return m_bodies; }
  const std::vector<ref_ptr<Constraint>>& getConstraints() const { return m_constraints; }
  /// Place of a body among the bodies, which it must be one of.
  static Index indexOf(const RigidBody& body) { return body.m_systemIndex; }

  /// Takes a reference on what says how long a step is; null is ignored.
  void setTimeGovernor(TimeGovernor* governor);
  TimeGovernor* getTimeGovernor() const { return m_timeGovernor.get(); }
  Solver* getSolver() const { return m_solver.get(); }
  /// What lets bodies sleep. Not owned.
  AutoSleep* getAutoSleep() const { return m_autoSleep.get(); }
  /// The space whose contacts act on the bodies, null for none. Not owned.
  void setSpace(kelCollide::Space* space) { m_space = space; }
  kelCollide::Space* getSpace() const { return m_space; }
  /// Acceleration of free bodies, m/s2; (0, 0, -9.80665) at first.
  void setUniformGravity(const Vec3& gravity) { m_gravity = gravity; }
  const Vec3& getUniformGravity() const { return m_gravity; }

  /// Moves the bodies on by a step: forces, solution, places. The contacts are those that the space has now.
  /// Does nothing when the step has no length.
  void stepForward();

  /// Sums over the dynamic bodies: kg m/s; kg m2/s about the world's origin; J.
  Vec3 getLinearMomentum() const;
  Vec3 getAngularMomentum() const;
  Real getPotentialEnergy() const;
  Real getTranslationalEnergy() const;
  Real getRotationalEnergy() const;
  Real getTotalEnergy() const
  {
    return getPotentialEnergy() + getTranslationalEnergy() + getRotationalEnergy();
  }
  String getImplementationName() const override { return "DynamicsSystem"; }

protected:
  ~DynamicsSystem() override;

private:
  template <class Quantity> auto sum(Quantity quantity) const;

  std::vector<ref_ptr<RigidBody>> m_bodies;
  std::vector<ref_ptr<Interaction>> m_interactions;
  std::vector<ref_ptr<Constraint>> m_constraints;
  ref_ptr<TimeGovernor> m_timeGovernor;
  ref_ptr<Solver> m_solver;
  ref_ptr<AutoSleep> m_autoSleep = new AutoSleep(nullptr);
  kelCollide::Space* m_space = nullptr;
  Vec3 m_gravity = Vec3(0, 0, -9.80665);
};

} // namespace kel
