#include "kelSDK/MaterialManager.h"
#include "kelCollide/Geometry.h"
#include "kelCollide/GeometryContact.h"
#include "simulation/references.h"
#include <functional>

namespace kelSDK {

using kel::ContactMaterial;
using kel::Material;

namespace {
const Material* materialOf(const kelCollide::Geometry& geometry)
{
  const Material* material = geometry.getMaterial();
  return material ? material : Material::getDefaultMaterial();
}
} // namespace

std::size_t MaterialManager::PairHash::operator()(const Pair& pair) const
{
  const std::hash<const Material*> hash;
  return hash(pair.first) * 31 + hash(pair.second);
}

MaterialManager::Pair MaterialManager::pairOf(const Material* material1, const Material* material2)
{
  return std::less<>()(material2, material1) ? Pair(material2, material1) : Pair(material1, material2);
}

bool MaterialManager::add(Material* material) { return kel::addReference(m_materials, material); }

bool MaterialManager::remove(Material* material) { return kel::removeReference(m_materials, material); }

bool MaterialManager::add(ContactMaterial* material)
{
  const kel::ref_ptr<ContactMaterial> keep(material);
  if (!material) return false;
  Entry& entry = m_contactMaterials[pairOf(material->getMaterial1(), material->getMaterial2())];
  if (entry.material && !entry.material->isImplicit()) return false;
  entry.material = material;
  material->setImplicit(false);
  return true;
}

bool MaterialManager::remove(ContactMaterial* material)
{
  if (!material) return false;
  const auto found = m_contactMaterials.find(pairOf(material->getMaterial1(), material->getMaterial2()));
  if (found == m_contactMaterials.end() || found->second.material.get() != material) return false;
  m_contactMaterials.erase(found);
  return true;
}

ContactMaterial* MaterialManager::getOrCreateContactMaterial(const Material* material1,
                                                             const Material* material2)
{
  if (!material1 || !material2) return nullptr;
  Entry& entry = m_contactMaterials[pairOf(material1, material2)];
  if (!entry.material || entry.material->isImplicit())
    entry.material = new ContactMaterial(*material1, *material2);
  return entry.material.get();
}

const ContactMaterial* MaterialManager::getContactMaterial(const Material* material1,
                                                           const Material* material2) const
{
  const auto found = m_contactMaterials.find(pairOf(material1, material2));
  return found == m_contactMaterials.end() ? nullptr : found->second.material.get();
}

Material* MaterialManager::getMaterial(const kel::Name& name) const
{
  return kel::findByName(m_materials, name);
}

ContactMaterial* MaterialManager::use(const Material* material1, const Material* material2)
{
  Entry& entry = m_contactMaterials[pairOf(material1, material2)];
  if (!entry.material) entry.material = new ContactMaterial(*material1, *material2, true);
  if (entry.lastUse != m_numAssignments) entry.material->update();
  entry.lastUse = m_numAssignments;
  return entry.material.get();
}

void MaterialManager::assign(const std::vector<kelCollide::GeometryContact>& contacts)
{
  ++m_numAssignments;
  for (kelCollide::GeometryContact contact : contacts)
    if (!contact.getMaterial())
      contact.setMaterial(use(materialOf(*contact.geometry(0)), materialOf(*contact.geometry(1))));
  // An implicit one keeps its materials alive, which a script may make by the thousand.
  std::erase_if(m_contactMaterials, [this](const auto& item) {
    return item.second.material->isImplicit() && item.second.lastUse != m_numAssignments;
  });
}

} // namespace kelSDK
