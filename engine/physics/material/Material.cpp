#include "kel/Material.h"
#include "material/MaterialRows.h"

namespace kel {

namespace {
const MaterialRows& rows() { return MaterialRows::instance(); }
} // namespace

Material::Material(const Name& name, const Material* other)
    : m_name(name), m_entity(rows().storage->createInstance())
{
  const Index row = m_entity.calculateIndex();
  rows().bulkMaterial[row] = m_bulk->getEntity();
  rows().surfaceMaterial[row] = m_surface->getEntity();
  rows().wireMaterial[row] = m_wire->getEntity();
  if (!other) return;
  m_bulk->copy(*other->m_bulk);
  m_surface->copy(*other->m_surface);
  m_wire->copy(*other->m_wire);
  setFrictionType(other->getFrictionType());
}

Material::Material(const Name& name, Real friction, Real restitution) : Material(name)
{
  m_surface->setRoughness(friction);
  m_bulk->setViscosity(1 - restitution);
}

Material::Material(const Material& other) : Material(other.m_name, &other) {}

Material::~Material() { m_entity.destroy(); }

Material* Material::getDefaultMaterial()
{
  static const auto* material = new ref_ptr<Material>(new Material("default"));
  return material->get();
}

void Material::setFrictionType(UInt32 type) { rows().frictionType[m_entity.calculateIndex()] = type; }

UInt32 Material::getFrictionType() const { return rows().frictionType[m_entity.calculateIndex()]; }

void Material::setDirty(bool dirty) const
{
  m_surface->setDirty(dirty);
  m_bulk->setDirty(dirty);
  m_wire->setDirty(dirty);
}

} // namespace kel
