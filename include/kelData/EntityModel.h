#pragma once
#include "kel/Model.h"
#include "kel/ref_ptr.h"
#include "kelData/Attribute.h"
#include <vector>

namespace kelData {

class EntityStorage;

/// The schema of a kind of entity: its attributes, those of its base model first.
class EntityModel : public kel::Model
{
public:
  explicit EntityModel(const kel::Name& name) : kel::Model(name) {}

  /// Inherits the attributes that `base` has now. Only before this model has attributes of its own, and only
  /// once: throws `std::logic_error` otherwise.
  void setBaseEntity(EntityModel* base);
  /// The model whose attributes are inherited, null for none. Not owned.
  EntityModel* getBaseEntity() const { return m_base.get(); }
  /// Whether this is `model` or inherits from it.
  bool isDerivedFrom(const EntityModel* model) const;

  /// Takes a reference on the attribute. Throws `std::logic_error` for a name that the model already has, for
  /// an attribute of another model, and once storages exist.
  void addAttribute(Attribute* attribute);
  /// All attributes, inherited ones first.
  const std::vector<kel::ref_ptr<Attribute>>& getAttributes() const { return m_attributes; }
  /// The attribute of that name, null if there is none. Not owned.
  Attribute* getAttribute(const kel::Name& name) const;

  /// Bytes of one instance, all attributes together.
  std::size_t getNumBytes() const;
  kel::String getImplementationName() const override { return "EntityModel"; }

protected:
  ~EntityModel() override = default;

private:
  friend class EntityStorage;

  kel::ref_ptr<EntityModel> m_base;
  std::vector<kel::ref_ptr<Attribute>> m_attributes;
  bool m_frozen = false; // storages exist
};

} // namespace kelData
