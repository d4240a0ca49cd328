#pragma once
#include "kel/Name.h"
#include "kel/Referenced.h"
#include "kelStream/Serializable.h"

namespace kel {

class DynamicsSystem;

/// Something that acts on the bodies of a system.
class Interaction : public Referenced, public kelStream::Serializable
{
public:
  explicit Interaction(const Name& name = Name()) : m_name(name) {}

  const String& getName() const { return m_name.str(); }
  void setName(const Name& name) { m_name = name; }
  /// Called in each step before the bodies' forces act; may add to them. The base does nothing.
  virtual void updateForce(DynamicsSystem*) {}
  String getClassName() const override { return "Interaction"; }

protected:
  ~Interaction() override = default;

private:
  Name m_name;
};

} // namespace kel
