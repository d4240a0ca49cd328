#pragma once
#include "kel/ContactMaterial.h"
#include <unordered_map>
#include <utility>
#include <vector>

namespace kelCollide {
class GeometryContact;
}

namespace kelSDK {

/// Knows the materials of a simulation and what holds where two of them meet: the contact material that was
/// added for the pair, else an implicit one. The order of a pair does not matter.
class MaterialManager : public kel::Referenced, public kelStream::Serializable
{
public:
  MaterialManager() = default;
  MaterialManager(const MaterialManager&) = delete;
  MaterialManager& operator=(const MaterialManager&) = delete;

  /// Add with a reference, or let go. False, and nothing happens, for null, for what is here already, for a
  /// contact material whose pair has one already, and for what is not here.
  bool add(kel::Material* material);
  bool add(kel::ContactMaterial* material);
  bool remove(kel::Material* material);
  bool remove(kel::ContactMaterial* material);

  /// The contact material that was added for a pair; if there is none, one with the parameters that two
  /// materials give is added. Not owned.
  kel::ContactMaterial* getOrCreateContactMaterial(const kel::Material* material1,
                                                   const kel::Material* material2);
  /// The contact material that holds for a pair, null if there is none yet. Not owned.
  const kel::ContactMaterial* getContactMaterial(const kel::Material* material1,
                                                 const kel::Material* material2) const;
  /// The material of that name, the first added if there are several; null if there is none. Not owned.
  kel::Material* getMaterial(const kel::Name& name) const;
  /// The material of geometries that have none of their own.
  kel::Material* getDefaultMaterial() const { return kel::Material::getDefaultMaterial(); }
  /// Gives a contact material the parameters that its materials give.
  static void calculateContactMaterial(kel::ContactMaterial* material) { material->calculate(); }

  /// Gives contacts that have no contact material the one of their geometries' materials, as these are now.
  void assign(const std::vector<kelCollide::GeometryContact>& contacts);
  kel::String getClassName() const override { return "MaterialManager"; }

protected:
  ~MaterialManager() override = default;

private:
  using Pair = std::pair<const kel::Material*, const kel::Material*>;
  struct PairHash
  {
    std::size_t operator()(const Pair& pair) const;
  };
  struct Entry
  {
    kel::ref_ptr<kel::ContactMaterial> material;
    kel::UInt32 lastUse = 0; // number of the assignment
  };

  static Pair pairOf(const kel::Material* material1, const kel::Material* material2);
  kel::ContactMaterial* use(const kel::Material* material1, const kel::Material* material2);

  std::vector<kel::ref_ptr<kel::Material>> m_materials;
  std::unordered_map<Pair, Entry, PairHash> m_contactMaterials;
  kel::UInt32 m_numAssignments = 0;
};

} // namespace kelSDK
