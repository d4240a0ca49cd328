#pragma once
#include "kel/BulkMaterial.h"
#include "kel/Name.h"
#include "kel/SurfaceMaterial.h"
#include "kel/WireMaterial.h"
#include "kel/ref_ptr.h"

namespace kel {

/// What a geometry is made of: its inside, its surface, and what it is like as a wire. Where two materials
/// meet, a `ContactMaterial` holds, by default one that is computed from both.
class Material : public Referenced, public kelStream::Serializable
{
public:
  /// Where friction acts, for those who ask; contacts of geometries do not.
  enum FrictionType
  {
    SURFACE_FRICTION = 0,
    POINT_FRICTION = 1
  };

  /// A material with default parts, or with copies of another one's parts.
  explicit Material(const Name& name, const Material* other = nullptr);
  /// One that has a coefficient of friction and a restitution against itself.
  Material(const Name& name, Real friction, Real restitution);
  /// Copies name, friction type and parts.
  Material(const Material& other);
  Material& operator=(const Material&) = delete;

  /// The material of geometries that have none of their own. Lives as long as the process.
  static Material* getDefaultMaterial();

  const String& getName() const { return m_name.str(); }
  /// The parts. Owned by the material.
  BulkMaterial* getBulkMaterial() const { return m_bulk.get(); }
  SurfaceMaterial* getSurfaceMaterial() const { return m_surface.get(); }
  WireMaterial* getWireMaterial() const { return m_wire.get(); }

  /// A number of `FrictionType`, which is not tested; `SURFACE_FRICTION` at first.
  void setFrictionType(UInt32 type);
  UInt32 getFrictionType() const;
  /// Whether a part has changed since contacts were last computed from it.
  bool isDirty() const { return m_surface->isDirty() || m_bulk->isDirty() || m_wire->isDirty(); }
  /// Sets the marks of all parts.
  void setDirty(bool dirty) const;
  /// Changes of the parts so far.
  UInt32 getModifiedCount() const
  {
    return m_surface->getModifiedCount() + m_bulk->getModifiedCount() + m_wire->getModifiedCount();
  }
  /// The row of this material in the storage of all materials.
  kelData::EntityPtr getEntity() const { return m_entity; }
  String getClassName() const override { return "Material"; }

protected:
  ~Material() override;

private:
  Name m_name;
  kelData::EntityPtr m_entity;
  ref_ptr<BulkMaterial> m_bulk = new BulkMaterial;
  ref_ptr<SurfaceMaterial> m_surface = new SurfaceMaterial;
  ref_ptr<WireMaterial> m_wire = new WireMaterial;
};

} // namespace kel
