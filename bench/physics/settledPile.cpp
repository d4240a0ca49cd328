// Boxes and spheres in a pit: milliseconds a step, falling and settled, ours and those of the collision
// library's own dynamics on the same scene in the same run.
#include "kelCollide/Box.h"
#include "kelCollide/Plane.h"
#include "kelCollide/Sphere.h"
#include "kelSDK/Simulation.h"
#include <algorithm>
#include <btBulletDynamicsCommon.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

namespace {

constexpr double RADIUS = 0.25; // m, also half the edge of a box
constexpr double TIME_STEP = 1.0 / 60;
constexpr int STEPS = 500;
constexpr int MEASURED = 100; // the last ones

struct Start
{
  double x;
  double y;
  double z;
  bool box;
};

std::vector<Start> pile(int count, double reach)
{
  std::srand(3);
  const auto jitter = [] { return 0.05 * (std::rand() % 100) / 100; };
  const int side = static_cast<int>((2 * reach - 0.2) / 0.6);
  std::vector<Start> starts;
  for (int i = 0; i < count; ++i) {
    const double x = -reach + 0.4 + 0.6 * (i % side) + jitter();
    const double y = -reach + 0.4 + 0.6 * (i / side % side) + jitter();
    starts.push_back({x, y, 0.4 + 0.6 * (i / side / side), i % 2 == 1});
  }
  return starts;
}

template <class Step> void measure(const char* name, Step step)
{
  std::vector<double> times;
  for (int i = 0; i < STEPS; ++i) {
    const auto begin = std::chrono::steady_clock::now();
    step();
    times.push_back(
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count());
  }
  const double worst = *std::max_element(times.begin(), times.end());
  std::nth_element(times.end() - MEASURED, times.end() - MEASURED / 2, times.end());
  std::printf("%-10s settled %7.2f ms a step (median of %d), worst %7.2f ms\n", name,
              *(times.end() - MEASURED / 2), MEASURED, worst);
}

void printState(double deepest, double fastest)
{
  std::printf("           deepest contact %.1f mm, fastest body %.3f m/s\n", deepest * 1e3, fastest);
}

void runOurs(const std::vector<Start>& starts, double reach)
{
  kel::ref_ptr<kelSDK::Simulation> simulation = new kelSDK::Simulation;
  simulation->add(new kelCollide::Geometry(new kelCollide::Plane));
  for (const kel::Vec3& normal :
       {kel::Vec3(1, 0, 0), kel::Vec3(-1, 0, 0), kel::Vec3(0, 1, 0), kel::Vec3(0, -1, 0)})
    simulation->add(new kelCollide::Geometry(new kelCollide::Plane(normal, reach)));
  for (const Start& start : starts) {
    kelCollide::Shape* shape = nullptr;
    if (start.box)
      shape = new kelCollide::Box(RADIUS, RADIUS, RADIUS);
    else
      shape = new kelCollide::Sphere(RADIUS);
    auto* body = new kel::RigidBody(new kelCollide::Geometry(shape));
    body->getMassProperties()->setMass(1);
    body->setPosition(start.x, start.y, start.z);
    simulation->add(body);
  }
  measure("kel", [&] { simulation->stepForward(); });
  double fastest = 0;
  double deepest = 0;
  for (const auto& body : simulation->getDynamicsSystem()->getRigidBodies())
    fastest = std::max(fastest, body->getVelocity().length());
  for (const auto& contact : simulation->getSpace()->getGeometryContacts())
    for (std::size_t i = 0; i < contact.getNumPoints(); ++i)
      deepest = std::max(deepest, contact.getPoint(i).depth());
  printState(deepest, fastest);
}

void runReference(const std::vector<Start>& starts, double reach)
{
  btDefaultCollisionConfiguration configuration;
  btCollisionDispatcher dispatcher(&configuration);
  btDbvtBroadphase broadphase;
  btSequentialImpulseConstraintSolver solver;
  btDiscreteDynamicsWorld world(&dispatcher, &broadphase, &solver, &configuration);
  world.setGravity(btVector3(0, 0, -9.80665));
  world.getSolverInfo().m_numIterations = 50;
  std::vector<std::unique_ptr<btCollisionShape>> shapes;
  std::vector<std::unique_ptr<btRigidBody>> bodies;
  const auto add = [&](btCollisionShape* shape, double mass, const btVector3& place) {
    btVector3 inertia(0, 0, 0);
    if (mass > 0) shape->calculateLocalInertia(mass, inertia);
    auto body = std::make_unique<btRigidBody>(mass, nullptr, shape, inertia);
    body->setWorldTransform(btTransform(btQuaternion::getIdentity(), place));
    body->setActivationState(DISABLE_DEACTIVATION);
    world.addRigidBody(body.get());
    bodies.push_back(std::move(body));
  };
  const auto keep = [&](btCollisionShape* shape) { return shapes.emplace_back(shape).get(); };
  add(keep(new btStaticPlaneShape(btVector3(0, 0, 1), 0)), 0, btVector3(0, 0, 0));
  for (const btVector3& normal :
       {btVector3(1, 0, 0), btVector3(-1, 0, 0), btVector3(0, 1, 0), btVector3(0, -1, 0)})
    add(keep(new btStaticPlaneShape(normal, -reach)), 0, btVector3(0, 0, 0));
  btCollisionShape* box = keep(new btBoxShape(btVector3(RADIUS, RADIUS, RADIUS)));
  btCollisionShape* sphere = keep(new btSphereShape(RADIUS));
  for (const Start& start : starts) add(start.box ? box : sphere, 1, btVector3(start.x, start.y, start.z));
  measure("reference", [&] { world.stepSimulation(TIME_STEP, 0, TIME_STEP); });
  double fastest = 0;
  double deepest = 0;
  for (const auto& body : bodies) fastest = std::max(fastest, double(body->getLinearVelocity().length()));
  for (int i = 0; i < dispatcher.getNumManifolds(); ++i) {
    const btPersistentManifold& manifold = *dispatcher.getManifoldByIndexInternal(i);
    for (int k = 0; k < manifold.getNumContacts(); ++k)
      deepest = std::max(deepest, double(-manifold.getContactPoint(k).getDistance()));
  }
  printState(deepest, fastest);
  for (const auto& body : bodies) world.removeRigidBody(body.get());
}

} // namespace

int main(int argc, char** argv)
{
  const int count = argc > 1 ? std::atoi(argv[1]) : 1000;
  const double reach = count <= 1000 ? 2.5 : 5; // half the width of the pit, m
  const std::vector<Start> starts = pile(count, reach);
  std::printf("%d bodies\n", count);
  runOurs(starts, reach);
  runReference(starts, reach);
}
