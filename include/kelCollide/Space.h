#pragma once
#include "kel/Types.h"
#include "kel/ref_ptr.h"
#include "kelCollide/Geometry.h"
#include "kelCollide/GeometryContact.h"
#include <functional>
#include <memory>
#include <unordered_set>
#include <vector>

namespace kelCollide {

/// Holds the geometries of a simulation and finds their contacts.
class Space : public kel::Referenced, public kelStream::Serializable
{
public:
  /// How pairs of geometries whose boxes overlap are found.
  enum BroadPhaseAlgorithm
  {
    SWEEP_AND_PRUNE = 0,
    HIERARCHICAL_GRID = 1
  };

  /// An empty space with `HIERARCHICAL_GRID`.
  Space();

  /// Takes a reference on a geometry; false for null and for one that a space has already.
  bool add(Geometry* geometry);
  /// Lets a geometry go, with its contacts; false if it is not here.
  bool remove(Geometry* geometry);
  /// The geometry of that name, the first added if there are several; null if there is none. Not owned.
  Geometry* getGeometry(const kel::Name& name) const;
  /// All geometries in the order of their addition.
  const std::vector<kel::ref_ptr<Geometry>>& getGeometries() const { return m_geometries; }

  /// Switches the algorithm; all contacts go. False for a number that is none.
  bool setBroadPhaseAlgorithm(int algorithm);
  /// How overlapping boxes are found.
  BroadPhaseAlgorithm getBroadPhaseAlgorithm() const { return m_broadPhase; }

  /// Finds overlapping boxes, then contacts.
  void update();
  /// Takes over where geometries have moved and finds the pairs whose boxes overlap.
  void updateBroadPhase();
  /// Finds the contacts of the pairs; earlier contacts become invalid.
  void updateNarrowPhase();

  /// The contacts of the last update, ordered by when their first, then their second geometry came to the
  /// space.
  const std::vector<GeometryContact>& getGeometryContacts() const { return m_contacts; }
  /// The contact of two geometries in any order; an invalid one if there is none.
  GeometryContact getContact(const Geometry* first, const Geometry* second) const;
  /// Forgets all contacts, also the forces that the next solution would start from.
  void clearContacts();
  /// How near surfaces of bodies of a metre and more come before they have a contact, m: such a contact has a
  /// negative depth. Smaller ones come nearer in proportion. 0 for contacts of surfaces that touch alone;
  /// 0.02 at first. Setting it lets all contacts go.
  void setContactReach(kel::Real reach);
  kel::Real getContactReach() const { return m_contactReach; }

  /// Thins out the points of contacts that have more than the threshold, as their contact materials say: what
  /// goes is switched off. Contacts without a material stay as they are.
  void reduceContacts();
  /// Whether points are thinned out at all; true at first.
  void setEnableContactReduction(bool enable) { m_reductionEnabled = enable; }
  bool getEnableContactReduction() const { return m_reductionEnabled; }
  /// Bins an axis where the contact material has no number of its own; 3 at first.
  void setContactReductionBinResolution(kel::UInt8 resolution) { m_reductionBinResolution = resolution; }
  kel::UInt8 getContactReductionBinResolution() const { return m_reductionBinResolution; }
  /// Points that are not too many; 8 at first.
  void setContactReductionThreshold(std::size_t threshold) { m_reductionThreshold = threshold; }
  std::size_t getContactReductionThreshold() const { return m_reductionThreshold; }

  /// Whether the space lets two geometries collide: not if one is null or both are the same, not if one or
  /// its body is disabled, has its collisions off, or both ride on one body, not if the pair or their groups
  /// are disabled, which are those of the space that both are in, and not if the filter says no. Every pair
  /// whose boxes meet is asked for in each update.
  bool canCollide(const Geometry* first, const Geometry* second) const
  {
    return canCollide(first, second, this);
  }
  /// The same for geometries of any space; the pairs and the filter are those of `space`, none for null.
  static bool canCollide(const Geometry* first, const Geometry* second, const Space* space);
  /// Disables and enables a pair; all pairs are enabled at first. Does nothing for null.
  void setEnableCollisions(const Geometry* first, const Geometry* second, bool enable);
  /// Whether a pair is enabled; false for null.
  bool getEnableCollisions(const Geometry* first, const Geometry* second) const;
  /// The groups that do not collide. Not owned.
  CollisionGroupManager* getCollisionGroupManager() const { return m_groups.get(); }
  /// Has the last word on each pair, by false; must not change the space. None at first.
  using Filter = std::function<bool(const Geometry& first, const Geometry& second)>;
  void setFilter(Filter filter) { m_filter = std::move(filter); }
  kel::String getClassName() const override { return "Space"; }

protected:
  ~Space() override;

private:
  class Detector;

  void dropContacts(const Geometry* geometry);

  std::vector<kel::ref_ptr<Geometry>> m_geometries;
  std::unordered_set<kel::UInt64> m_disabledPairs; // both ids, the smaller one in the upper half
  kel::ref_ptr<CollisionGroupManager> m_groups = new CollisionGroupManager;
  Filter m_filter;
  std::vector<GeometryContact> m_contacts;
  kel::Real m_contactReach = 0.02;
  BroadPhaseAlgorithm m_broadPhase = HIERARCHICAL_GRID;
  std::unique_ptr<Detector> m_detector;
  kel::UInt32 m_nextOrder = 0;
  bool m_reductionEnabled = true;
  kel::UInt8 m_reductionBinResolution = 3;
  std::size_t m_reductionThreshold = 8;
};

} // namespace kelCollide
