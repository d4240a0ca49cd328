#include "Scene.h"
#include "kel/ParticleEmitter.h"
#include "kelSDK/StepEventListener.h"
#include <functional>
#include <gtest/gtest.h>
#include <string>

namespace {

using namespace kel;
using kelCollide::Box;
using kelSDK::Simulation;
using kelSDK::StepEventListener;

class Recorder : public StepEventListener
{
public:
  Recorder(std::string& log, char name, int mask = ALL) : StepEventListener(mask), m_log(log), m_name(name) {}

  void preCollide(const TimeStamp&) override { note("c"); }
  void pre(const TimeStamp&) override { note("b"); }
  void post(const TimeStamp& time) override
  {
    note("p");
    postTime = time;
    if (onPost) onPost();
  }
  void last(const TimeStamp& time) override
  {
    note("l");
    lastTime = time;
  }
  void addNotification() override { note("+"); }
  void removeNotification() override { note("-"); }

  std::function<void()> onPost;
  TimeStamp postTime = -1;
  TimeStamp lastTime = -1;

private:
  void note(const char* event) { m_log += m_name + std::string(event) + " "; }

  std::string& m_log;
  char m_name;
};

TEST(Simulation, CallsListenersByMaskAndPriority)
{
  std::string log;
  ref_ptr<Simulation> simulation = new Simulation;
  ref_ptr<Recorder> low = new Recorder(log, 'a');
  ref_ptr<Recorder> first = new Recorder(log, 'b', StepEventListener::DEFAULT);
  ref_ptr<Recorder> second = new Recorder(log, 'c', StepEventListener::POST_STEP);
  ref_ptr<Recorder> high = new Recorder(log, 'd', StepEventListener::POST_STEP);
  EXPECT_TRUE(simulation->add(low.get(), 0));
  EXPECT_TRUE(simulation->add(first.get()));
  EXPECT_TRUE(simulation->add(second.get()));
  EXPECT_TRUE(simulation->add(high.get(), 1000));
  EXPECT_FALSE(simulation->add(high.get()));
  simulation->stepForward();
  EXPECT_EQ(log, "a+ b+ c+ d+ ac bb ab dp bp cp ap al ");
  EXPECT_EQ(low->postTime, 0);
  EXPECT_EQ(low->lastTime, 1.0 / 60);

  log.clear();
  low->setEnable(false);
  first->setMask(0);
  EXPECT_TRUE(simulation->remove(second.get()));
  EXPECT_FALSE(simulation->remove(second.get()));
  simulation->stepForward();
  EXPECT_EQ(log, "c- dp ");
}

TEST(Simulation, ListenersMayRemoveAnythingWhileTheyAreCalled)
{
  std::string log;
  ref_ptr<Simulation> simulation = new Simulation;
  auto* killer = new Recorder(log, 'k', StepEventListener::POST_STEP);
  auto* victim = new Recorder(log, 'v', StepEventListener::POST_STEP);
  simulation->add(killer, 60);
  simulation->add(victim);
  killer->onPost = [&] {
    simulation->remove(victim);
    simulation->add(new Recorder(log, 'n', StepEventListener::POST_STEP));
    simulation->remove(killer); // its last reference but the caller's
  };
  simulation->stepForward();
  simulation->stepForward();
  EXPECT_EQ(log, "k+ v+ kp v- n+ k- np ");
}

TEST(Simulation, SurvivesItsOwnRelease)
{
  std::string log;
  ref_ptr<Simulation> simulation = new Simulation;
  ref_ptr<Recorder> listener = new Recorder(log, 'x');
  simulation->add(listener.get());
  listener->onPost = [&] { simulation = nullptr; };
  simulation->stepForward();
  EXPECT_EQ(log, "x+ xc xb xp xl ");
  EXPECT_EQ(listener->getSimulation(), nullptr);

  auto* uncounted = new Simulation;
  uncounted->stepForward();
  EXPECT_EQ(uncounted->getReferenceCount(), 0u);
  ref_ptr<Simulation> owner = uncounted;
}

TEST(Simulation, BodiesMayComeAndGoInEveryPhase)
{
  Scene scene;
  scene.addGeometry(new kelCollide::Plane);
  for (int i = 0; i < 6; ++i) scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 0, 0.5 + i), 1);

  struct Replacer : StepEventListener
  {
    Scene& scene;
    int count = 0;
    explicit Replacer(Scene& s) : StepEventListener(ALL), scene(s) {}
    void replace()
    {
      const auto& bodies = scene.simulation->getDynamicsSystem()->getRigidBodies();
      scene.simulation->remove(bodies[static_cast<std::size_t>(count++) % bodies.size()].get());
      scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 0, 7), 1);
    }
    void preCollide(const TimeStamp&) override { replace(); }
    void pre(const TimeStamp&) override { replace(); }
    void post(const TimeStamp&) override { replace(); }
    void last(const TimeStamp&) override { replace(); }
  };
  scene.simulation->add(new Replacer(scene));
  scene.step(100);
  EXPECT_EQ(scene.simulation->getDynamicsSystem()->getRigidBodies().size(), 6u);
  EXPECT_EQ(scene.simulation->getSpace()->getGeometries().size(), 7u);
}

TEST(Simulation, AddsAndRemovesOnce)
{
  ref_ptr<Simulation> simulation = new Simulation;
  ref_ptr<RigidBody> body = new RigidBody("crate");
  ref_ptr<kelCollide::Geometry> geometry = new kelCollide::Geometry("wall");
  body->add(geometry.get());
  EXPECT_TRUE(simulation->add(body.get()));
  EXPECT_FALSE(simulation->add(body.get()));
  EXPECT_FALSE(simulation->add(geometry.get()));
  EXPECT_EQ(simulation->getRigidBody("crate"), body.get());
  EXPECT_EQ(simulation->getGeometry("wall"), geometry.get());
  EXPECT_EQ(simulation->getGeometry("door"), nullptr);
  EXPECT_EQ(simulation->getRigidBody(body->getUuid()), body.get());
  EXPECT_EQ(simulation->getGeometry(body->getUuid()), nullptr);
  EXPECT_TRUE(simulation->remove(body.get(), false));
  EXPECT_FALSE(simulation->remove(body.get()));
  EXPECT_TRUE(simulation->remove(geometry.get()));

  ref_ptr<kel::Emitter> emitter = new kel::ParticleEmitter;
  EXPECT_TRUE(simulation->add(emitter.get()));
  EXPECT_FALSE(simulation->add(emitter.get()));
  EXPECT_TRUE(simulation->remove(emitter.get()));
  EXPECT_FALSE(simulation->remove(emitter.get()));
  EXPECT_FALSE(simulation->add(static_cast<kelSDK::EventListener*>(nullptr)));
  EXPECT_FALSE(simulation->remove(static_cast<kelSDK::EventListener*>(nullptr)));
  EXPECT_FALSE(simulation->add(static_cast<RigidBody*>(nullptr)));
}

TEST(Simulation, WorksWithoutItsParts)
{
  ref_ptr<Simulation> simulation = new Simulation;
  simulation->setDynamicsSystem(nullptr);
  simulation->setSpace(nullptr);
  EXPECT_EQ(simulation->getTimeStep(), 0);
  EXPECT_FALSE(simulation->setUniformGravity(Vec3()));
  const ref_ptr<RigidBody> body = new RigidBody;
  EXPECT_FALSE(simulation->add(body.get()));
  simulation->stepForward();
}

TEST(Simulation, StepsToATime)
{
  ref_ptr<Simulation> simulation = new Simulation;
  EXPECT_NEAR(simulation->stepTo(1), 1, 1e-12);
  EXPECT_EQ(simulation->getClock()->getFrame(), 60u);
  EXPECT_FALSE(simulation->breakStepTo());

  std::string log;
  ref_ptr<Recorder> breaker =
      new Recorder(log, 'b', StepEventListener::LAST_STEP | StepEventListener::POST_STEP);
  breaker->onPost = [&] { EXPECT_TRUE(simulation->breakStepTo()); };
  simulation->add(breaker.get());
  EXPECT_NEAR(simulation->stepTo(5), 61.0 / 60, 1e-12);
}

} // namespace
