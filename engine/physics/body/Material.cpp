#include "kel/Material.h"
#include "kel/ref_ptr.h"

namespace kel {

Material* Material::getDefaultMaterial()
{
  static const auto* material = new ref_ptr<Material>(new Material("default"));
  return material->get();
}

} // namespace kel
