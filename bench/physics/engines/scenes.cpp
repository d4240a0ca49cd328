// Scenes whose outcome is known in closed form.
#include "scenes.h"
#include <algorithm>
#include <cmath>
#include <numbers>

namespace bench {

namespace {

using kel::Quat;
using kel::Vec3;

constexpr double G = Engine::GRAVITY;
constexpr double SLOPE = std::numbers::pi / 6;
const Vec3 UP(0, 0, 1);

void run(Engine& engine, double seconds, double timeStep)
{
  const auto steps = std::lround(seconds / timeStep);
  for (long i = 0; i < steps; ++i) engine.step();
}

double freeFall(const EngineKind& kind)
{
  constexpr double h = 1.0 / 60;
  const auto engine = kind.make(h, {});
  const int body = engine->addSphere(0.5, 1, Vec3(0, 0, 100));
  run(*engine, 1, h);
  return std::abs(engine->motion(body).velocity.z() + G);
}

/// A box on a slope of 30 degrees, with friction as a multiple of what holds it.
struct Incline
{
  static constexpr double h = 1.0 / 60;
  std::unique_ptr<Engine> engine;
  int box;
  Vec3 downhill{std::cos(SLOPE), 0, -std::sin(SLOPE)};

  Incline(const EngineKind& kind, double friction) : engine(kind.make(h, {friction * std::tan(SLOPE)}))
  {
    const Vec3 normal(std::sin(SLOPE), 0, std::cos(SLOPE));
    engine->addPlane(normal, 0);
    box = engine->addBox(Vec3(0.5), 1, normal * 0.5, Quat(SLOPE, Vec3(0, 1, 0)));
  }
};

double slide(const EngineKind& kind)
{
  Incline incline(kind, 0.97);
  run(*incline.engine, 2, Incline::h);
  const double expected = 0.03 * G * std::sin(SLOPE) * 2;
  return std::abs(incline.engine->motion(incline.box).velocity * incline.downhill / expected - 1) * 100;
}

double creep(const EngineKind& kind)
{
  Incline incline(kind, 1.03);
  run(*incline.engine, 1, Incline::h);
  const Vec3 start = incline.engine->motion(incline.box).position;
  run(*incline.engine, 4, Incline::h);
  return (incline.engine->motion(incline.box).position - start).length() / 4 * 1000;
}

double diagonalSlide(const EngineKind& kind)
{
  constexpr double h = 1.0 / 240;
  constexpr double speed = 5;
  constexpr double friction = 0.5;
  const auto engine = kind.make(h, {friction});
  engine->addPlane(UP, 0);
  const int box = engine->addBox(Vec3(0.5, 0.5, 0.1), 1, Vec3(0, 0, 0.1), Quat());
  engine->setVelocity(box, Vec3(1, 1, 0).normal() * speed, Vec3());
  run(*engine, 3, h);
  const double expected = speed * speed / (2 * friction * G);
  return std::abs(engine->motion(box).position.length() / expected - 1) * 100;
}

double stackDrift(const EngineKind& kind)
{
  constexpr double h = 1.0 / 60;
  constexpr int count = 10;
  const auto engine = kind.make(h, {});
  engine->addPlane(UP, 0);
  for (int i = 0; i < count; ++i) engine->addBox(Vec3(0.5), 1, Vec3(0, 0, 0.5 + i), Quat());
  run(*engine, 30, h);
  double drift = 0;
  for (int i = 0; i < count; ++i) {
    const Vec3 p = engine->motion(i).position;
    drift = std::max(drift, std::hypot(p.x(), p.y()));
  }
  return drift * 1000;
}

double heavyOnLight(const EngineKind& kind)
{
  constexpr double h = 1.0 / 60;
  const auto engine = kind.make(h, {});
  engine->addPlane(UP, 0);
  engine->addBox(Vec3(0.5), 1, Vec3(0, 0, 0.5), Quat());
  const int heavy = engine->addBox(Vec3(0.5), 1000, Vec3(0, 0, 1.5), Quat());
  run(*engine, 5, h);
  return std::abs(1.5 - engine->motion(heavy).position.z()) * 1000;
}

double bounce(const EngineKind& kind)
{
  constexpr double h = 1.0 / 240;
  constexpr double restitution = 0.7;
  constexpr double radius = 0.5;
  const auto engine = kind.make(h, {0.5, restitution});
  engine->addPlane(UP, 0);
  const int ball = engine->addSphere(radius, 1, Vec3(0, 0, radius + 1));
  double peak = 0;
  bool hasHit = false;
  for (int i = 0; i < 240; ++i) {
    engine->step();
    const Motion motion = engine->motion(ball);
    hasHit = hasHit || motion.velocity.z() > 0;
    if (hasHit) peak = std::max(peak, motion.position.z() - radius);
  }
  return std::abs(peak / (restitution * restitution) - 1) * 100;
}

/// Momentum and energy of a free box that spins about an axis near the middle one, after a minute.
struct Spin
{
  static constexpr double h = 1.0 / 60;
  static constexpr double mass = 12;
  Vec3 size{1, 2, 3};
  double momentumLoss;
  double energyLoss;

  explicit Spin(const EngineKind& kind)
  {
    const auto engine = kind.make(h, {});
    const int box = engine->addBox(size * 0.5, mass, Vec3(0, 0, 1e4), Quat());
    engine->setVelocity(box, Vec3(), Vec3(0.1, 2, 0.1));
    const Vec3 before = momentum(engine->motion(box));
    const double energyBefore = energy(engine->motion(box));
    run(*engine, 60, h);
    momentumLoss = (momentum(engine->motion(box)) - before).length() / before.length();
    energyLoss = std::abs(energy(engine->motion(box)) / energyBefore - 1);
  }

  Vec3 inertia() const
  {
    const auto square = [this](int i) { return size[i] * size[i]; };
    return Vec3(square(1) + square(2), square(0) + square(2), square(0) + square(1)) * (mass / 12);
  }
  Vec3 localMomentum(const Motion& motion) const
  {
    return Vec3::mul(inertia(), motion.rotation.conj() * motion.angularVelocity);
  }
  Vec3 momentum(const Motion& motion) const { return motion.rotation * localMomentum(motion); }
  double energy(const Motion& motion) const { return 0.5 * (momentum(motion) * motion.angularVelocity); }
};

double momentumLoss(const EngineKind& kind) { return Spin(kind).momentumLoss * 100; }
double energyLoss(const EngineKind& kind) { return Spin(kind).energyLoss * 100; }

/// A ball on a rod of 1 m that starts level, after a minute.
struct Pendulum
{
  double energyLoss; ///< Of the energy at the start, measured from the lowest point.
  double error = 0;  ///< Of the rod's length, m

  Pendulum(const EngineKind& kind, double h)
  {
    constexpr double radius = 0.05;
    const auto engine = kind.make(h, {});
    const int ball = engine->addSphere(radius, 1, Vec3(1, 0, 0));
    engine->addBallJoint(ball, Engine::WORLD, Vec3());
    const auto steps = std::lround(60 / h);
    for (long i = 0; i < steps; ++i) {
      engine->step();
      const Motion motion = engine->motion(ball);
      error = std::max(error, (motion.position + motion.rotation * Vec3(-1, 0, 0)).length());
    }
    const Motion end = engine->motion(ball);
    const double spin = end.angularVelocity.length();
    const double inertia = 0.4 * radius * radius;
    const double energy =
        0.5 * end.velocity.length2() + 0.5 * inertia * spin * spin + G * (end.position.z() + 1);
    energyLoss = 1 - energy / G;
  }
};

double pendulumLoss(const EngineKind& kind) { return Pendulum(kind, 1.0 / 60).energyLoss * 100; }
double pendulumError(const EngineKind& kind) { return Pendulum(kind, 1.0 / 60).error * 1000; }
double finePendulumLoss(const EngineKind& kind) { return Pendulum(kind, 1.0 / 600).energyLoss * 100; }
double finePendulumError(const EngineKind& kind) { return Pendulum(kind, 1.0 / 600).error * 1000; }

double chainSag(const EngineKind& kind)
{
  constexpr double h = 1.0 / 60;
  constexpr int links = 10;
  const auto engine = kind.make(h, {});
  int last = Engine::WORLD;
  for (int i = 0; i < links; ++i) {
    const double mass = i == links - 1 ? 1000 : 1;
    const int link = engine->addBox(Vec3(0.05, 0.05, 0.2), mass, Vec3(0, 0, -0.25 - 0.5 * i), Quat());
    engine->addHinge(link, last, Vec3(0, 0, -0.5 * i), Vec3(0, 1, 0));
    last = link;
  }
  run(*engine, 5, h);
  return std::abs(engine->motion(last).position.z() + 0.25 + 0.5 * (links - 1)) * 1000;
}

constexpr Scene SCENES[] = {
    {"free fall, 1 s: speed", "m/s", freeFall},
    {"slope, friction 3 % short: speed after 2 s", "%", slide},
    {"slope, friction 3 % to spare: creep", "mm/s", creep},
    {"slide across the axes: distance", "%", diagonalSlide},
    {"ten boxes, 30 s: drift", "mm", stackDrift},
    {"1000 kg on 1 kg: sunk", "mm", heavyOnLight},
    {"bounce, e = 0.7: height", "%", bounce},
    {"spinning box, 60 s: momentum", "%", momentumLoss},
    {"spinning box, 60 s: energy", "%", energyLoss},
    {"pendulum, 60 s at 1/60: energy lost", "%", pendulumLoss},
    {"pendulum, 60 s at 1/60: length", "mm", pendulumError},
    {"pendulum, 60 s at 1/600: energy lost", "%", finePendulumLoss},
    {"pendulum, 60 s at 1/600: length", "mm", finePendulumError},
    {"chain of ten hinges, 1000 kg at its end: sag", "mm", chainSag},
};

constexpr EngineKind KINDS[] = {
    {"kel", true, makeOwn},
    {"Bullet", true, makeBullet},
    {"ODE", false, makeOde},
    {"ODE quick", true, makeOdeQuick},
};

} // namespace

std::span<const Scene> scenes() { return SCENES; }
std::span<const EngineKind> engineKinds() { return KINDS; }

} // namespace bench
