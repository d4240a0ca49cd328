#include "solver/SolverBody.h"
#include <Eigen/Eigenvalues>
#include <Eigen/LU>
#include <algorithm>
#include <cmath>

namespace kel {

namespace {

/// h^2 K over the inertia up to which a step resolves a swing.
constexpr Real RESOLVED_STIFFNESS = 0.25;
/// Growth of the energy in a step that a swing may bring about; forces of an impact grow faster.
constexpr Real LARGEST_GROWTH = 1.2;

void put(Real (&target)[6], const Vec3& linear, const Vec3& angular)
{
  for (std::size_t i = 0; i < 3; ++i) {
    target[i] = linear[i];
    target[3 + i] = angular[i];
  }
}

/// Lower triangle C with C C^T = m.
void factorize(const SPDMatrix3x3& m, Real (&c)[3][3])
{
  c[0][0] = std::sqrt(m(0, 0));
  c[1][0] = m(1, 0) / c[0][0];
  c[2][0] = m(2, 0) / c[0][0];
  c[1][1] = std::sqrt(m(1, 1) - c[1][0] * c[1][0]);
  c[2][1] = (m(2, 1) - c[2][0] * c[1][0]) / c[1][1];
  c[2][2] = std::sqrt(m(2, 2) - c[2][0] * c[2][0] - c[2][1] * c[2][1]);
  c[0][1] = c[0][2] = c[1][2] = 0;
}

} // namespace

void SolverBody::load(const RigidBody& body, const Vec3& gravity, Real timeStep)
{
  *this = SolverBody();
  const Vec3& velocity = body.getVelocity();
  const Vec3& angularVelocity = body.getAngularVelocity();
  put(oldVelocity, velocity, angularVelocity);
  put(freeVelocity, velocity, angularVelocity);
  if (body.getMotionControl() == RigidBody::DYNAMICS) loadForces(body, gravity, timeStep);
  const Vec3 factors = Vec3(linearFactor + angularFactor[0][0], angularFactor[1][1], angularFactor[2][2]);
  const Real* v = freeVelocity;
  const Vec3 sum = body.getCmPosition() + factors + Vec3(v[0] + v[3], v[1] + v[4], v[2] + v[5]);
  isFinite = std::isfinite(sum.x() + sum.y() + sum.z());
}

void SolverBody::loadForces(const RigidBody& body, const Vec3& gravity, Real timeStep)
{
  const MassProperties& mass = *body.getMassProperties();
  const AffineMatrix4x4& cm = body.getCmTransform();
  const SPDMatrix3x3& inverseInertia = mass.getInvInertiaTensor();
  const Vec3 spin = cm.transformVector(inverseInertia * cm.transform3x3Inv(body.getTorque()));
  put(freeVelocity, body.getVelocity() + (gravity + body.getForce() * mass.getInvMass()) * timeStep,
      body.getAngularVelocity() + spin * timeStep);

  linearFactor = std::sqrt(mass.getInvMass());
  Real local[3][3];
  factorize(inverseInertia, local);
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j)
      for (std::size_t k = j; k < 3; ++k) angularFactor[i][j] += cm(k, i) * local[k][j];
}

void SolverBody::stiffen(const Eigen::Matrix3d& stiffness, Real timeStep, Real lastStiffening)
{
  using Factor = Eigen::Matrix<Real, 3, 3, Eigen::RowMajor>;
  Eigen::Map<Factor> factor(&angularFactor[0][0]);
  Eigen::Map<Eigen::Vector3d> velocity(freeVelocity + 3);
  const Eigen::Matrix3d scaled = factor.transpose() * stiffness * factor * (timeStep * timeStep);
  if (!(scaled.squaredNorm() > RESOLVED_STIFFNESS * RESOLVED_STIFFNESS) || !scaled.allFinite()) return;
  isStiffened = true;
  const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> eigen(scaled);
  const Eigen::Array3d inertia = 1 + (eigen.eigenvalues().array().abs() - RESOLVED_STIFFNESS).max(0);
  const Eigen::Array3d spin = (eigen.eigenvectors().transpose() * factor.inverse() * velocity).array();
  const Real energy = spin.square().sum();
  const Real stiffEnergy = (inertia * spin.square()).sum();
  if (stiffEnergy > LARGEST_GROWTH * lastStiffening * energy)
    velocity *= std::sqrt(LARGEST_GROWTH * lastStiffening * energy / stiffEnergy);
  factor *= eigen.eigenvectors() * inertia.rsqrt().matrix().asDiagonal() * eigen.eigenvectors().transpose();
}

void SolverBody::scaleFreeVelocity(Real (&scaled)[6]) const
{
  const auto& f = angularFactor;
  const Real* w = freeVelocity + 3;
  const Real determinant = f[0][0] * (f[1][1] * f[2][2] - f[1][2] * f[2][1]) -
                           f[0][1] * (f[1][0] * f[2][2] - f[1][2] * f[2][0]) +
                           f[0][2] * (f[1][0] * f[2][1] - f[1][1] * f[2][0]);
  for (std::size_t i = 0; i < 3; ++i) {
    scaled[i] = freeVelocity[i] / linearFactor;
    // Cramer's rule: column i of the factor replaced.
    const std::size_t a = (i + 1) % 3;
    const std::size_t b = (i + 2) % 3;
    scaled[3 + i] =
        (w[0] * (f[1][a] * f[2][b] - f[1][b] * f[2][a]) + w[1] * (f[2][a] * f[0][b] - f[2][b] * f[0][a]) +
         w[2] * (f[0][a] * f[1][b] - f[0][b] * f[1][a])) /
        determinant;
  }
}

void SolverBody::unscale(const Real (&scaled)[6], Vec3& velocity, Vec3& angularVelocity) const
{
  for (std::size_t i = 0; i < 3; ++i) {
    velocity[i] = scaled[i] * linearFactor;
    angularVelocity[i] =
        angularFactor[i][0] * scaled[3] + angularFactor[i][1] * scaled[4] + angularFactor[i][2] * scaled[5];
  }
}

void SolverBody::scaleRow(const Vec3& linear, const Vec3& angular, Real (&row)[6]) const
{
  for (std::size_t i = 0; i < 3; ++i) {
    row[i] = linear[i] * linearFactor;
    row[3 + i] = angular[0] * angularFactor[0][i] + angular[1] * angularFactor[1][i] +
                 angular[2] * angularFactor[2][i];
  }
}

} // namespace kel
