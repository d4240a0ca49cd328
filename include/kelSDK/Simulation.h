#pragma once
#include "kel/Clock.h"
#include "kel/Component.h"
#include "kel/DynamicsSystem.h"
#include "kel/MergedBody.h"
#include "kel/ObserverFrame.h"
#include "kel/ParticleEmitter.h"
#include "kel/ParticleSystem.h"
#include "kelCollide/Space.h"
#include "kelControl/Action.h"
#include "kelSDK/Assembly.h"
#include "kelSDK/EventManager.h"
#include "kelSDK/MaterialManager.h"
#include <vector>

namespace kelSDK {

/// A world that moves in steps. It holds a reference on everything that is added.
class Simulation : public kel::Component
{
public:
  /// An empty world at time 0, with steps of 1/60 s and the gravity of the earth.
  Simulation();

  /// Add an object with a reference. False, and nothing happens, for null and for one that is here (bodies,
  /// geometries and listeners: in any simulation) already.
  bool add(EventListener* listener, int priority = EventManager::DEFAULT_PRIORITY);
  bool add(kel::Emitter* emitter);
  bool add(kel::ParticleSystem* system);
  bool add(Assembly* assembly, bool addContents = true);
  bool add(kel::Interaction* interaction);
  bool add(kel::ObserverFrame* frame);
  bool add(kelControl::Action* action);
  bool add(kel::Constraint* constraint);
  bool add(kel::MergedBody* body);
  /// Adds the geometries of the body too, unless told otherwise.
  bool add(kel::RigidBody* body, bool addGeometries = true);
  bool add(kelCollide::Geometry* geometry);
  /// The same for a contact material whose pair has one.
  bool add(kel::ContactMaterial* material);
  bool add(kel::Material* material);

  /// Let an object go. False, and nothing happens, for null and for one that is not here.
  bool remove(EventListener* listener);
  bool remove(kel::Emitter* emitter);
  bool remove(kel::ParticleSystem* system);
  bool remove(Assembly* assembly, bool removeContents = true);
  bool remove(kel::Interaction* interaction);
  bool remove(kelControl::Action* action);
  bool remove(kel::ObserverFrame* frame);
  bool remove(kel::Constraint* constraint);
  bool remove(kel::MergedBody* body);
  /// Removes the geometries of the body too, unless told otherwise.
  bool remove(kel::RigidBody* body, bool removeGeometries = true);
  bool remove(kelCollide::Geometry* geometry);
  bool remove(kel::Material* material);
  bool remove(kel::ContactMaterial* material);

  bool addEventListener(EventListener* listener, int priority = EventManager::DEFAULT_PRIORITY)
  {
    return add(listener, priority);
  }
  bool removeEventListener(EventListener* listener) { return remove(listener); }

  /// The first object of that name, null if there is none. Not owned.
  kel::RigidBody* getRigidBody(const kel::Name& name) const;
  kelCollide::Geometry* getGeometry(const kel::Name& name) const;
  kel::Constraint* getConstraint(const kel::Name& name) const;
  kel::Material* getMaterial(const kel::Name& name) const;
  EventListener* getEventListener(const kel::Name& name) const;
  /// The object of that identifier, null if there is none. Not owned.
  kel::RigidBody* getRigidBody(const kel::Uuid& uuid) const;
  kelCollide::Geometry* getGeometry(const kel::Uuid& uuid) const;
  kel::Constraint* getConstraint(const kel::Uuid& uuid) const;

  /// Moves the world on by a step: `preCollide` events, contacts, `pre` events, solution and new places,
  /// `post` events, clock, `last` events. Does nothing, with a warning, while a step is under way.
  void stepForward();
  /// Steps until the clock has reached a time in s, or `breakStepTo` is called; returns the clock's time.
  kel::Real stepTo(kel::Real time);
  /// Ends `stepTo` after the step under way; false if none is under way.
  bool breakStepTo();

  /// Length of a step, s; 0 without a dynamics system.
  kel::Real getTimeStep() const;
  /// Sets the length of a step, s, above 0; does nothing without a dynamics system.
  void setTimeStep(kel::Real timeStep);
  /// The clock's time, s.
  kel::TimeStamp getTimeStamp() const { return m_clock->getTime(); }
  /// Sets the clock, s, without a step.
  void setTimeStamp(kel::TimeStamp time) { m_clock->setTime(time); }

  /// Acceleration of free bodies, m/s2; false without a dynamics system.
  bool setUniformGravity(const kel::Vec3& gravity);
  /// Acceleration of free bodies, m/s2; 0 without a dynamics system.
  kel::Vec3 getUniformGravity() const;

  /// The parts; null where they were set so. Owned by the simulation.
  kelCollide::Space* getSpace() const { return m_space.get(); }
  void setSpace(kelCollide::Space* space);
  kel::DynamicsSystem* getDynamicsSystem() const { return m_system.get(); }
  void setDynamicsSystem(kel::DynamicsSystem* system);
  kel::Clock* getClock() const { return m_clock.get(); }
  kel::Solver* getSolver() const { return m_system ? m_system->getSolver() : nullptr; }
  /// Says what holds where two materials meet. Owned by the simulation.
  MaterialManager* getMaterialManager() const { return m_materialManager.get(); }
  kel::String getImplementationName() const override { return "Simulation"; }

protected:
  ~Simulation() override;

private:
  kel::ref_ptr<kelCollide::Space> m_space;
  kel::ref_ptr<kel::DynamicsSystem> m_system;
  kel::ref_ptr<kel::Clock> m_clock;
  kel::ref_ptr<EventManager> m_events;
  std::vector<kel::ref_ptr<kel::Emitter>> m_emitters;
  std::vector<kel::ref_ptr<kel::ParticleSystem>> m_particleSystems;
  std::vector<kel::ref_ptr<Assembly>> m_assemblies;
  std::vector<kel::ref_ptr<kel::ObserverFrame>> m_observerFrames;
  std::vector<kel::ref_ptr<kelControl::Action>> m_actions;
  std::vector<kel::ref_ptr<kel::MergedBody>> m_mergedBodies;
  kel::ref_ptr<MaterialManager> m_materialManager;
  bool m_stepping = false;
  bool m_steppingTo = false;
};

} // namespace kelSDK
