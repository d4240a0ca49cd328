#pragma once
#include "kel/ElementaryConstraint.h"
#include "kel/Interaction.h"
#include "kel/RigidBody.h"
#include "kel/ref_ptr.h"
#include <cstddef>
#include <vector>

namespace kel {

/// A bond between bodies, put together from elementary constraints.
class Constraint : public Interaction
{
public:
  /// Which solver treats the rows.
  enum SolveType
  {
    DIRECT = 1,
    ITERATIVE = 4,
    DIRECT_AND_ITERATIVE = DIRECT | ITERATIVE
  };

  std::size_t getNumBodies() const { return m_bodies.size(); }
  /// The body at an index, null for one beyond the last. Not owned.
  RigidBody* getBodyAt(std::size_t index) const;

  /// Takes a reference on an elementary constraint and names it; false for null and for a name that is taken.
  bool addElementaryConstraint(const Name& name, ElementaryConstraint* constraint);
  /// Lets one go; false if it is not here.
  bool removeElementaryConstraint(const ElementaryConstraint* constraint);
  /// The one at an index, null beyond the last. Not owned.
  ElementaryConstraint* getElementaryConstraint(std::size_t index) const;
  std::size_t getNumElementaryConstraints() const { return m_elementary.size(); }

  /// Whether the constraint acts; true at first.
  virtual void setEnable(bool enable) { m_enabled = enable; }
  virtual bool getEnable() const { return m_enabled; }
  bool isEnabled() const { return getEnable(); }
  /// Bits of `SolveType`, `DIRECT` at first.
  void setSolveType(UInt32 type) { m_solveType = type; }
  UInt32 getSolveType() const { return m_solveType; }

protected:
  /// Takes references on the bodies that are not null.
  explicit Constraint(RigidBody* body1 = nullptr, RigidBody* body2 = nullptr);
  ~Constraint() override = default;

private:
  std::vector<ref_ptr<RigidBody>> m_bodies;
  std::vector<ref_ptr<ElementaryConstraint>> m_elementary;
  UInt32 m_solveType = DIRECT;
  bool m_enabled = true;
};

} // namespace kel
