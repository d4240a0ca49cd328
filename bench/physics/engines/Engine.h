#pragma once
#include "kel/Quat.h"
#include "kel/Vec3.h"
#include <memory>
#include <span>

namespace bench {

/// What all bodies of a scene are made of.
struct Surface
{
  double friction = 0.5;
  double restitution = 0;
};

struct Motion
{
  kel::Vec3 position; ///< Of the centre of mass, m.
  kel::Quat rotation;
  kel::Vec3 velocity;        ///< m/s
  kel::Vec3 angularVelocity; ///< rad/s
};

/// A world in one of the engines that are compared. Bodies are numbers in the order of their creation.
/// Gravity is (0, 0, -9.80665) m/s2; nothing falls asleep before it may.
class Engine
{
public:
  static constexpr double GRAVITY = 9.80665; // m/s2
  static constexpr double SLOW = 0.05;       // m/s, and rad/s
  static constexpr double REST_TIME = 0.8;   // s
  static constexpr int WORLD = -1;           ///< In place of the second body of a joint.

  virtual ~Engine() = default;
  virtual int addBox(const kel::Vec3& halfExtents, double mass, const kel::Vec3& position,
                     const kel::Quat& rotation) = 0;
  virtual int addSphere(double radius, double mass, const kel::Vec3& position) = 0;
  /// The half space below normal * p = offset, which does not move.
  virtual void addPlane(const kel::Vec3& normal, double offset) = 0;
  /// Joints at a point of the world, m; a hinge turns about an axis through it.
  virtual void addBallJoint(int body1, int body2, const kel::Vec3& point) = 0;
  virtual void addHinge(int body1, int body2, const kel::Vec3& point, const kel::Vec3& axis) = 0;
  virtual void setVelocity(int body, const kel::Vec3& velocity, const kel::Vec3& angularVelocity) = 0;
  virtual Motion motion(int body) const = 0;
  /// Lets bodies sleep that have been slower than `SLOW` for `REST_TIME`.
  virtual void allowSleep() = 0;
  virtual void step() = 0;
};

/// A way to solve a scene.
struct EngineKind
{
  const char* name;
  bool isForPiles; ///< Whether its steps stay affordable with a thousand bodies.
  std::unique_ptr<Engine> (*make)(double timeStep, const Surface& surface);
};

std::unique_ptr<Engine> makeOwn(double timeStep, const Surface& surface);
std::unique_ptr<Engine> makeBullet(double timeStep, const Surface& surface);
std::unique_ptr<Engine> makeOde(double timeStep, const Surface& surface);
std::unique_ptr<Engine> makeOdeQuick(double timeStep, const Surface& surface);

/// All of them, ours first.
std::span<const EngineKind> engineKinds();

} // namespace bench
