#include "Scene.h"
#include "kel/BuildConfiguration.h"
#include "kel/Hinge.h"
#include <cstring>
#include <gtest/gtest.h>

namespace {

using kel::Real;
using kel::RigidBody;
using kel::Vec3;
using kelCollide::Box;

/// Sets the number of threads until it dies.
struct Threads
{
  explicit Threads(unsigned long count) { kel::setNumThreads(count); }
  ~Threads() { kel::setNumThreads(1); }
};

/// Heaps and chains of different sizes that do not touch each other.
std::vector<Real> manyIslands(unsigned long numThreads)
{
  const Threads threads(numThreads);
  Scene scene;
  scene.addGeometry(new kelCollide::Plane);
  std::vector<RigidBody*> bodies;
  for (int heap = 0; heap < 20; ++heap)
    for (int i = 0; i <= heap % 7; ++i)
      bodies.push_back(scene.addBody(new Box(0.4, 0.4, 0.4), Vec3(3 * heap, 0.1 * i, 0.4 + i), 1 + i));
  for (int chain = 0; chain < 20; ++chain) {
    RigidBody* previous = nullptr;
    for (int i = 0; i <= chain % 5; ++i) {
      const Vec3 start(3 * chain + 0.5 * i, 5, 4);
      RigidBody* link = scene.addBody(new Box(0.25, 0.05, 0.05), start + Vec3(0.25, 0, 0), 1);
      scene.simulation->add(new kel::Hinge(kel::HingeFrame(start, Vec3(0, 1, 0)), link, previous));
      bodies.push_back(previous = link);
    }
  }
  scene.step(200);
  std::vector<Real> state;
  for (const RigidBody* body : bodies) {
    state.insert(state.end(), body->getTransform().ptr(), body->getTransform().ptr() + 16);
    state.insert(state.end(), body->getVelocity().ptr(), body->getVelocity().ptr() + 3);
    state.insert(state.end(), body->getAngularVelocity().ptr(), body->getAngularVelocity().ptr() + 3);
  }
  return state;
}

TEST(Threads, AnyNumberGivesTheSameBits)
{
  const std::vector<Real> alone = manyIslands(1);
  for (const unsigned long numThreads : {2, 4}) {
    const std::vector<Real> together = manyIslands(numThreads);
    ASSERT_EQ(alone.size(), together.size());
    EXPECT_EQ(std::memcmp(alone.data(), together.data(), alone.size() * sizeof(Real)), 0) << numThreads;
  }
}

TEST(Threads, NumberChangesBetweenSteps)
{
  Scene scene;
  std::vector<RigidBody*> bodies;
  scene.addGeometry(new kelCollide::Plane);
  for (int i = 0; i < 30; ++i)
    bodies.push_back(scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(2 * i, 0, 0.5), 1));
  for (const unsigned long numThreads : {4, 1, 3, 8, 2}) {
    const Threads threads(numThreads);
    scene.step(60);
    for (const RigidBody* body : bodies) EXPECT_NEAR(body->getPosition().z(), 0.5, 1e-4);
  }
}

} // namespace
