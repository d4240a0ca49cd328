#include "solver/ContactConstraints.h"
#include "collision/ContactRows.h"
#include "kel/Constraint.h"
#include "kelCollide/Geometry.h"
#include "solver/AreaStiffness.h"
#include <algorithm>
#include <cmath>
#include <optional>

namespace kel {

using kelCollide::ContactPoint;
using kelCollide::ContactPointRows;
using kelCollide::Geometry;
using kelCollide::GeometryContact;

namespace {

/// Part of the last step's impulses that contacts start from. More makes tall stacks sway, less makes them
/// sink.
constexpr Real WARM_START = 0.85;
/// Softness of normals where joints can hold bodies against them, and the speed at which such bodies are
/// pushed apart at most, m/s.
constexpr Real SOFTNESS_AT_JOINTS = 1e-4;
constexpr Real PUSH_AT_JOINTS = 0.1;
/// Stiffness of a point for each Pa of Young's modulus, m.
constexpr Real STIFFNESS_LENGTH = 1;
/// Least stiffness, N/m: what has none acts as if it were not there.
constexpr Real LEAST_STIFFNESS = 1e-6;

const Material& materialOf(const Geometry& geometry)
{
  const Material* material = geometry.getMaterial();
  return material ? *material : *Material::getDefaultMaterial();
}

Real notNegative(Real value) { return value > 0 ? value : 0; }

/// A number that bounds something together with others: not negative, and no infinity that 0 times makes a
/// NaN.
Real boundingFactor(Real value)
{
  constexpr Real greatest = 1e15;
  return std::min(notNegative(value), greatest);
}

/// The row of the speed of two bodies along a direction at a point.
ConstraintRow makeRow(const Vec3& point, const Vec3 (&centers)[2], const Vec3& direction)
{
  ConstraintRow row;
  row.linear[0] = direction;
  row.linear[1] = -direction;
  row.angular[0] = cross(point - centers[0], direction);
  row.angular[1] = -cross(point - centers[1], direction);
  return row;
}

/// The row of the speed at which a body turns against another one about an axis.
ConstraintRow makeTurningRow(const Vec3& axis, Real compliance)
{
  ConstraintRow row;
  row.form = ConstraintRow::NON_HOLONOMIC;
  row.compliance = notNegative(compliance);
  row.angular[0] = axis;
  row.angular[1] = -axis;
  return row;
}

} // namespace

void ContactConstraints::begin(Real timeStep, Real impactSpeedThreshold, bool allowDirect)
{
  m_timeStep = timeStep;
  m_impactSpeedThreshold = impactSpeedThreshold;
  m_allowDirect = allowDirect;
  m_joints.clear();
  m_targets.clear();
}

void ContactConstraints::add(const GeometryContact& contact, const Index (&bodies)[2])
{
  const ContactPointRows& points = ContactPointRows::instance();
  ContactMaterial* material = contact.getMaterial();
  if (!material) {
    m_unassigned = new ContactMaterial(materialOf(*contact.geometry(0)), materialOf(*contact.geometry(1)));
    material = m_unassigned.get();
  }
  Common common = {*material, {bodies[0], bodies[1]}};
  for (std::size_t side = 0; side < 2; ++side)
    if (const RigidBody* body = contact.rigidBody(side)) common.centers[side] = body->getCmPosition();
  setSolveTypes(common);
  std::size_t numTouching = 0;
  for (std::size_t i = 0; i < contact.getNumPoints(); ++i) {
    const Index pointRow = contact.getPoint(i).getId();
    if (points.enabled[pointRow] && points.depth[pointRow] > 0) ++numTouching;
  }
  if (numTouching > 0)
    common.adhesion = boundingFactor(material->getAdhesion()) / static_cast<Real>(numTouching);
  std::optional<AreaStiffness> areaStiffness;
  if (material->getUseContactAreaApproach()) areaStiffness.emplace(contact, *material);
  const Real stiffness = material->getYoungsModulus() * STIFFNESS_LENGTH;
  for (std::size_t i = 0; i < contact.getNumPoints(); ++i) {
    const ContactPoint point = contact.getPoint(i);
    if (point.enabled())
      addPoint(common, point.getId(), areaStiffness ? areaStiffness->at(point) : stiffness);
  }
}

void ContactConstraints::setSolveTypes(Common& common) const
{
  common.normalType = Constraint::DIRECT;
  common.frictionType = Constraint::ITERATIVE;
  const FrictionModel* model = common.material.getFrictionModel();
  switch (model ? model->getSolveType() : FrictionModel::SPLIT) {
  case FrictionModel::DIRECT:
    common.frictionType = Constraint::DIRECT;
    break;
  case FrictionModel::ITERATIVE:
    common.normalType = Constraint::ITERATIVE;
    break;
  case FrictionModel::DIRECT_AND_ITERATIVE:
    common.normalType = common.frictionType = Constraint::DIRECT_AND_ITERATIVE;
    break;
  default:
    break;
  }
  if (!m_allowDirect) common.normalType = common.frictionType = Constraint::ITERATIVE;
  const bool keepsImpulses = !m_joints.empty() && (common.normalType & Constraint::DIRECT);
  common.frictionWarmStart = keepsImpulses ? 1 : WARM_START;
}

void ContactConstraints::addPoint(const Common& common, Index pointRow, Real stiffness)
{
  const ContactPointRows& points = ContactPointRows::instance();
  const ContactMaterial& material = common.material;
  const Index normal = m_rows.add(makeNormal(common, pointRow, stiffness), common.bodies[0], common.bodies[1],
                                  m_timeStep, points.impulse[pointRow].x() * WARM_START, common.normalType);
  Target target = {normal, FrictionBound::NO_ROW, pointRow};
  FrictionBound bound;
  bound.normal = normal;
  if (points.depth[pointRow] > 0) bound.offset = common.adhesion * m_timeStep;
  if (material.getSurfaceFrictionEnabled())
    target.friction = addFriction(common, pointRow, makeBound(common, pointRow, bound));
  if (material.getRollingResistanceCoefficient() > 0 || material.getTwistingResistanceCoefficient() > 0)
    addResistance(common, pointRow, bound);
  m_targets.push_back(target);
}

ConstraintRow ContactConstraints::makeNormal(const Common& common, Index pointRow, Real stiffness) const
{
  const ContactPointRows& points = ContactPointRows::instance();
  const Real depth = points.depth[pointRow];
  ConstraintRow normal =
      makeRow(points.point[pointRow], common.centers, Vec3(points.normal[pointRow]).normal());
  normal.form = ConstraintRow::BACKWARD;
  normal.compliance = 1 / (stiffness > LEAST_STIFFNESS ? stiffness : LEAST_STIFFNESS);
  normal.target = -depth;
  // Surfaces that only come near each other may touch at the end of the step, not before.
  normal.damping = depth > 0 ? notNegative(common.material.getDamping()) : 0;
  normal.lowerForce = 0;
  if (depth > 0 && common.adhesion > 0) {
    normal.lowerForce = -common.adhesion;
    normal.target += common.material.getAdhesiveOverlap();
  }
  if (!m_joints.empty()) normal.softness = SOFTNESS_AT_JOINTS;
  if (areJoined(common.bodies))
    normal.target = std::max(normal.target, -PUSH_AT_JOINTS * (m_timeStep + normal.damping));
  else if (common.material.getRestitution() > 0)
    applyRestitution(common, normal, depth);
  return normal;
}

// Such contacts lie near the joint and point along it, so they see the speed at which the joint corrects
// itself. A bounce from that would have to turn the bodies, the faster the nearer it is.
bool ContactConstraints::areJoined(const Index (&bodies)[2]) const
{
  return bodies[0] && bodies[1] && m_joints.count(std::minmax(bodies[0], bodies[1])) > 0;
}

/// A body that falls with a constant acceleration a in steps h keeps v^2/2 + a x - a h v/2, x being the gap
/// and v the speed at which it grows: the height of its peak does not depend on where the steps lie. So the
/// bounce leaves e^2 of that, whether the surfaces are still apart or overlap already. What has less than the
/// gap alone cannot be reached and is below what the step resolves.
void ContactConstraints::applyRestitution(const Common& common, ConstraintRow& normal, Real depth) const
{
  Real speed = 0;
  Real freeSpeed = 0;
  for (std::size_t side = 0; side < 2; ++side) {
    const SolverBody& body = m_bodies[common.bodies[side]];
    speed += body.oldSpeedAlong(normal.linear[side], normal.angular[side]);
    freeSpeed += body.freeSpeedAlong(normal.linear[side], normal.angular[side]);
  }
  if (-speed <= m_impactSpeedThreshold || (depth < 0 && freeSpeed * m_timeStep >= depth)) return;
  const Real restitution = common.material.getRestitution();
  const Real change = speed - freeSpeed;         // a h
  const Real gap = -depth * change / m_timeStep; // a x
  const Real energy = speed * speed / 2 + gap - change * speed / 2;
  const Real rest = restitution * restitution * energy - gap;
  if (!(rest > 0)) return;
  const Real bounce = std::sqrt(change * change / 4 + 2 * rest) - change / 2;
  const Real push = depth / (m_timeStep + normal.damping);
  if (bounce <= push) return;
  normal.form = ConstraintRow::NON_HOLONOMIC;
  normal.target = bounce;
  normal.compliance = notNegative(common.material.getImpactCompliance()) * m_timeStep;
}

FrictionBound ContactConstraints::makeBound(const Common& common, Index pointRow, FrictionBound bound) const
{
  for (UInt32 k = 0; k < 2; ++k)
    bound.coefficients[k] = boundingFactor(common.material.getFrictionCoefficient(k));
  const FrictionModel* model = common.material.getFrictionModel();
  if (!model) return bound;
  bound.isCone = (model->getCallbackMask() & FrictionModel::ITERATIVE_PROJECTION) != 0;
  if (model->getCallbackMask() & FrictionModel::INITIALIZE) {
    bound.offset += ContactPointRows::instance().boundingForce[pointRow] * m_timeStep;
    bound.normal = FrictionBound::NO_ROW;
  }
  return bound;
}

Index ContactConstraints::addFriction(const Common& common, Index pointRow, const FrictionBound& bound)
{
  const ContactPointRows& points = ContactPointRows::instance();
  const Vec3 slide(points.velocity[pointRow]);
  const Vec3 tangents[2] = {Vec3(points.tangentU[pointRow]), Vec3(points.tangentV[pointRow])};
  ConstraintRow rows[2];
  for (UInt32 k = 0; k < 2; ++k) {
    rows[k] = makeRow(points.point[pointRow], common.centers, tangents[k]);
    rows[k].form = ConstraintRow::NON_HOLONOMIC;
    rows[k].compliance = common.material.getSurfaceViscosity(k);
    rows[k].target = -(tangents[k] * slide);
  }
  return addPair(common, rows, bound, points.impulse[pointRow] * common.frictionWarmStart);
}

void ContactConstraints::addResistance(const Common& common, Index pointRow, const FrictionBound& bound)
{
  const ContactPointRows& points = ContactPointRows::instance();
  const ContactMaterial& material = common.material;
  FrictionBound rolling = bound;
  rolling.coefficients[0] = rolling.coefficients[1] =
      boundingFactor(material.getRollingResistanceCoefficient());
  const Real compliance = material.getRollingResistanceCompliance();
  if (rolling.coefficients[0] > 0)
    addPair(common,
            {makeTurningRow(Vec3(points.tangentU[pointRow]), compliance),
             makeTurningRow(Vec3(points.tangentV[pointRow]), compliance)},
            rolling, Vec3());
  FrictionBound twisting = bound;
  twisting.coefficients[0] = boundingFactor(material.getTwistingResistanceCoefficient());
  if (twisting.coefficients[0] > 0)
    addPair(common,
            {makeTurningRow(Vec3(points.normal[pointRow]), material.getTwistingResistanceCompliance()),
             ConstraintRow()},
            twisting, Vec3());
}

Index ContactConstraints::addPair(const Common& common, const ConstraintRow (&rows)[2],
                                  const FrictionBound& bound, const Vec3& impulse)
{
  return m_rows.addFriction(rows[0], rows[1], common.bodies[0], common.bodies[1], m_timeStep, bound,
                            impulse.y(), impulse.z(), common.frictionType);
}

void ContactConstraints::storeImpulses() const
{
  const ContactPointRows& points = ContactPointRows::instance();
  for (const Target& target : m_targets) {
    Vec3& impulse = points.impulse[target.pointRow];
    impulse = Vec3(m_rows.getImpulse(target.normal), 0, 0);
    for (std::size_t k = 0; k < 2 && target.friction != FrictionBound::NO_ROW; ++k)
      impulse[k + 1] = m_rows.getFrictionImpulse(target.friction, k);
    points.localForce[target.pointRow] = impulse / m_timeStep;
  }
}

} // namespace kel
