#include "solver/ContactConstraints.h"
#include "collision/ContactRows.h"
#include "kel/Constraint.h"
#include "kelCollide/Geometry.h"
#include <cmath>

namespace kel {

using kelCollide::ContactPointRows;
using kelCollide::Geometry;
using kelCollide::GeometryContact;

namespace {

/// Softness of contacts, m/N: far below that of real bodies, far above rounding.
constexpr Real CONTACT_COMPLIANCE = 1e-9;
/// Steps in which a penetration goes to a third. With 5, tall stacks sway where the sweeps are too few.
constexpr Real CONTACT_DAMPING_STEPS = 10;
/// Part of the last step's impulses that contacts start from. More makes tall stacks sway, less makes them
/// sink.
constexpr Real WARM_START = 0.85;
/// Creep of friction that holds, m/(N s).
constexpr Real FRICTION_COMPLIANCE = 1e-10;

const Material& materialOf(const Geometry& geometry)
{
  const Material* material = geometry.getMaterial();
  return material ? *material : *Material::getDefaultMaterial();
}

} // namespace

void ContactConstraints::begin(Real timeStep, Real impactSpeedThreshold)
{
  m_timeStep = timeStep;
  m_impactSpeedThreshold = impactSpeedThreshold;
}

void ContactConstraints::clear(bool allowDirect)
{
  m_allowDirect = allowDirect;
  m_targets.clear();
}

void ContactConstraints::add(const GeometryContact& contact, const Index (&bodies)[2])
{
  const Material& material1 = materialOf(*contact.geometry(0));
  const Material& material2 = materialOf(*contact.geometry(1));
  const Real friction = std::sqrt(material1.getFrictionCoefficient() * material2.getFrictionCoefficient());
  const Real restitution = std::sqrt(material1.getRestitution() * material2.getRestitution());
  Vec3 centers[2];
  for (std::size_t side = 0; side < 2; ++side)
    if (const RigidBody* body = contact.rigidBody(side)) centers[side] = body->getCmPosition();
  for (std::size_t i = 0; i < contact.getNumPoints(); ++i) {
    const Index pointRow = contact.getPoint(i).getId();
    if (ContactPointRows::instance().enabled[pointRow])
      addPoint(pointRow, bodies, centers, friction, restitution);
  }
}

void ContactConstraints::addPoint(Index pointRow, const Index (&bodies)[2], const Vec3 (&centers)[2],
                                  Real friction, Real restitution)
{
  const ContactPointRows& points = ContactPointRows::instance();
  const Vec3& position = points.point[pointRow];
  const auto makeRow = [&](const Vec3& direction) {
    ConstraintRow row;
    row.linear[0] = direction;
    row.linear[1] = -direction;
    row.angular[0] = cross(position - centers[0], direction);
    row.angular[1] = -cross(position - centers[1], direction);
    return row;
  };
  ConstraintRow normal = makeRow(Vec3(points.normal[pointRow]).normal());
  const Real depth = points.depth[pointRow];
  normal.form = ConstraintRow::BACKWARD;
  normal.compliance = CONTACT_COMPLIANCE;
  normal.target = -depth;
  // Surfaces that only come near each other may touch at the end of the step, not before.
  normal.damping = depth > 0 ? CONTACT_DAMPING_STEPS * m_timeStep : 0;
  normal.lowerForce = 0;
  if (restitution > 0) applyRestitution(normal, bodies, depth, restitution);
  const Vec3 impulse = points.impulse[pointRow] * WARM_START;
  const UInt32 solveType = m_allowDirect ? Constraint::DIRECT : Constraint::ITERATIVE;
  Target target = {m_rows.add(normal, bodies[0], bodies[1], m_timeStep, impulse.x(), solveType), 0, pointRow};

  const Vec3 slide = Vec3(points.velocity[pointRow]);
  ConstraintRow tangents[2] = {makeRow(Vec3(points.tangentU[pointRow])),
                               makeRow(Vec3(points.tangentV[pointRow]))};
  for (ConstraintRow& row : tangents) {
    row.form = ConstraintRow::NON_HOLONOMIC;
    row.compliance = FRICTION_COMPLIANCE;
    row.target = -(row.linear[0] * slide);
  }
  target.friction =
      m_rows.addFriction(tangents[0], tangents[1], bodies[0], bodies[1], m_timeStep, target.normal, friction,
                         impulse.y(), impulse.z(), Constraint::ITERATIVE);
  m_targets.push_back(target);
}

void ContactConstraints::applyRestitution(ConstraintRow& normal, const Index (&bodies)[2], Real depth,
                                          Real restitution) const
{
  Real speed = 0;
  for (std::size_t side = 0; side < 2; ++side)
    speed += m_bodies[bodies[side]].oldSpeedAlong(normal.linear[side], normal.angular[side]);
  const bool meets = depth >= 0 || speed * m_timeStep < depth;
  const Real bounce = -restitution * speed;
  const Real push = depth / (m_timeStep + normal.damping);
  if (!meets || -speed <= m_impactSpeedThreshold || bounce <= push) return;
  normal.form = ConstraintRow::NON_HOLONOMIC;
  normal.target = bounce;
}

void ContactConstraints::storeImpulses() const
{
  const ContactPointRows& points = ContactPointRows::instance();
  for (const Target& target : m_targets) {
    points.impulse[target.pointRow] =
        Vec3(m_rows.getImpulse(target.normal), m_rows.getFrictionImpulse(target.friction, 0),
             m_rows.getFrictionImpulse(target.friction, 1));
    points.localForce[target.pointRow] = points.impulse[target.pointRow] / m_timeStep;
  }
}

} // namespace kel
