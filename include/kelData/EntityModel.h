#pragma once
#include "kel/Model.h"
#include "kel/ref_ptr.h"
#include "kelData/Attribute.h"
#include "kelData/EntityPtr.h"
#include <ostream>
#include <vector>

namespace kelData {

struct EntityData;
class EntityStorage;

using AttributePtrVector = std::vector<kel::ref_ptr<Attribute>>;

/// The schema of a kind of entity: its attributes, those of its base model first. Errors are
/// `std::logic_error`s.
class EntityModel : public kel::Model
{
public:
  /// What C++ code does for the instances of a model.
  class Loader : public kel::Referenced
  {
  public:
    /// Looks up whatever the code reaches the attributes by. Called when the model gets the loader.
    virtual void initAttributeAccessors() {}
    /// Finishes a new instance, which has the default values.
    virtual void construct(EntityPtr instance) = 0;
  };

  /// A model without attributes. A name with dots, such as "Physics.RigidBody", places it in the models'
  /// tree.
  explicit EntityModel(const kel::Name& fullName);

  /// The code behind the model, null for none. Not owned.
  Loader* getSource() const { return m_source.get(); }
  /// Takes a reference on the loader, which finishes new instances from now on; null for none.
  void setSource(Loader* source);

  /// Inherits the attributes of a model, which takes no more from now on. Only before this model has
  /// attributes of its own, and only once.
  void setBaseEntity(EntityModel* base);
  /// The model whose attributes are inherited, null for none. Not owned.
  EntityModel* getBaseEntity() const { return m_base.get(); }
  /// Whether this is `model` or inherits from it.
  bool isDerivedFrom(const EntityModel* model) const;

  /// Takes a reference on the attribute. Throws for a name that the model already has, for an attribute of
  /// another model, and once there are storages or models that inherit.
  void addAttribute(Attribute* attribute);
  /// All attributes, inherited ones first.
  const AttributePtrVector& getAttributes() const { return m_attributes; }
  /// The attribute of that name, null if there is none. Not owned.
  Attribute* getAttribute(const kel::Name& name) const;

  /// Whether ids of the instances of new storages stay when rows move; true at first. See `EntityStorage`.
  void setUseInstanceTable(bool use) { m_useInstanceTable = use; }
  bool useInstanceTable() const { return m_useInstanceTable; }
  /// Whether the loader finishes new instances; false without a loader.
  void setHasConstructor(bool has) { m_hasConstructor = has; }
  bool hasConstructor() const { return m_hasConstructor && m_source; }

  /// A storage that the model has for itself, made on the first call; the model then lives as long as the
  /// process. Not owned.
  EntityStorage* getDefaultStorage();
  /// Where the values of a storage of this model lie; the storage owns the result. Throws for a storage of a
  /// model that is not derived from this one.
  EntityData* createData(EntityStorage& storage) const;
  /// Bytes of one instance, all attributes together.
  std::size_t getNumBytes() const;
  /// Writes the full name and a line for each attribute to standard output or to a stream.
  void print() const;
  void print(std::ostream& stream) const;

  /// Whether making and ending instances takes a lock, so that several threads may do it in the same storage;
  /// false at first. For all storages, and only while no other thread uses one.
  static void setThreadSafe(bool threadSafe);
  static bool getThreadSafe();
  /// The nameless model above all others. Not owned.
  static kel::Model* getRootModel();
  kel::String getImplementationName() const override { return "EntityModel"; }

protected:
  ~EntityModel() override;

private:
  friend class EntityStorage;

  kel::ref_ptr<EntityModel> m_base;
  kel::ref_ptr<Loader> m_source;
  AttributePtrVector m_attributes;
  kel::ref_ptr<EntityStorage> m_defaultStorage;
  bool m_isFrozen = false; // storages or derived models exist
  bool m_useInstanceTable = true;
  bool m_hasConstructor = true;
};

/// The latest living model of a full name, null if there is none. Not owned.
EntityModel* getEntity(const kel::String& fullName);
bool hasEntity(const kel::String& fullName);
/// All living models, in the order in which they were made. Not owned.
std::vector<EntityModel*> getEntities();

} // namespace kelData
