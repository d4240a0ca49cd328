#pragma once
#include "kel/Component.h"
#include "kelData/Buffer.h"
#include "kelData/EntityData.h"
#include "kelData/EntityModel.h"
#include "kelData/EntityPtr.h"
#include "kelData/InstanceTable.h"
#include <mutex>
#include <ostream>
#include <utility>
#include <vector>

namespace kelData {

using BufferTable = std::vector<kel::ref_ptr<Buffer>>;

/// The instances of an entity model, one row each, with one buffer an attribute. Buffers never move, so a
/// pointer to a row is good as long as the row is.
///
/// With the instance table, as the model says, an id is never used twice, and the rows lie without holes: the
/// last one takes the place of one that is destroyed. Without it the id is the row, which never moves, and a
/// destroyed instance leaves a hole that a later one takes. Rows that objects hold do not move either.
///
/// Errors are `std::logic_error`s; a storage that is full throws `std::length_error`.
class EntityStorage : public kel::Component
{
public:
  /// The index of no row.
  static constexpr kel::Index NO_INDEX = 0xFFFFFFFF;
  /// Who decides on rows: anybody, or objects that hold one each, by its index or its address.
  enum class Rows
  {
    FREE,
    HELD
  };

  /// An empty storage; takes a reference on the model, which takes no more attributes from now on.
  explicit EntityStorage(EntityModel* model, Rows rows = Rows::FREE);

  /// A value that follows the size, and one that follows the capacity, from the next change on.
  ValueRefT<kel::UInt> sizeParameter;
  ValueRefT<kel::UInt> capacityParameter;

  EntityModel* getEntityModel() const { return m_model.get(); }
  /// Whether rows belong to objects, so that nobody else may make or end any.
  bool isHeld() const { return m_rows == Rows::HELD; }
  /// Live instances.
  std::size_t size() const { return m_size; }
  bool empty() const { return m_size == 0; }
  /// Rows in use, holes included: all indices are below it.
  std::size_t getNumRows() const { return m_instances->size(); }
  /// Rows that there is memory for.
  std::size_t capacity() const;
  /// Bytes of the memory for values.
  std::size_t getNumBytes() const;
  /// Provides memory for that many rows.
  void reserve(std::size_t numRows);
  /// Provides memory for that many rows, and where it is not there yet, for `margin` more, so that growing by
  /// few at a time asks seldom. Returns the capacity.
  std::size_t presize(std::size_t numRows, std::size_t margin);
  /// Makes instances behind the last one, or destroys the last ones, until there are that many. Without
  /// `initialize`, new ones have any values, where those are plain data.
  void resize(std::size_t numInstances, bool initialize = true);

  /// A new instance with the attributes' default values.
  EntityPtr createInstance();
  /// New instances, all in rows behind those in use.
  EntityRange createInstances(std::size_t count);
  /// Ends an instance; does nothing for one that is gone.
  void destroyInstance(EntityPtr instance);
  void destroyInstance(kel::UInt32 id);
  /// Destroys all instances.
  void clear();
  /// Takes an instance over from another storage: values of attributes that match come with it. Its name
  /// here; the old one ends.
  EntityPtr transferInstance(EntityPtr instance);
  /// A new instance with the values of another one, of any storage or of an id of this one.
  EntityPtr copyInstance(EntityPtr instance);
  EntityPtr copyInstance(kel::UInt32 id) { return copyInstance(EntityPtr(this, id)); }
  /// Sets an instance's values of attributes that match to those of another one.
  void copyAttributes(EntityPtr to, EntityPtr from);

  /// Switches the table of ids. Only before the first instance.
  void setUseInstanceTable(bool use);
  bool useInstanceTable() const { return m_useInstanceTable; }
  /// The row of an id, `NO_INDEX` if its instance is gone or never was.
  kel::Index idToIndex(kel::UInt32 id) const;
  /// The id of a row, `EntityPtr::NO_ID` for a hole.
  kel::UInt32 indexToId(kel::Index index) const;
  /// The rows' instances, invalid ones for holes; a view that follows as rows change, but for their number.
  Array<EntityPtr> getInstances() const { return m_instances->getArray(); }

  /// Adds an attribute that this storage has besides those of its model. Takes a reference. Throws for a name
  /// that the storage has already.
  void addCustomAttribute(Attribute* attribute);
  /// All attributes, those of the model first.
  const AttributePtrVector& getAttributes() const { return m_attributes; }
  /// The attribute of that name, null if there is none. Not owned.
  Attribute* getAttribute(const kel::Name& name) const;
  /// The attribute's buffer; null for one that is unknown here or shared. Not owned.
  Buffer* getBuffer(const Attribute* attribute) const;
  Buffer* getBuffer(const kel::Name& attributeName) const { return getBuffer(getAttribute(attributeName)); }
  /// In the order of the attributes, null for shared ones.
  const BufferTable& getBuffers() const { return m_buffers; }
  /// The first value of an attribute, index it by row; good as long as the storage lives. Throws when the
  /// attribute is unknown here or its values are not of type T.
  template <class T> T* data(const Attribute* attribute) const
  {
    return static_cast<T*>(typedData(attribute, typeid(T).name()));
  }
  /// The value of a shared attribute, null for any other. Its expression is read on the first call; throws
  /// `std::runtime_error` for one that the storage's context does not allow. Not owned.
  Value* getSharedValue(const Attribute* attribute);
  /// Where the values lie; owned by the storage.
  EntityData* createData();

  /// Writes the name, and the instances with their values, to standard output or to a stream.
  void print() const;
  void print(std::ostream& stream) const;
  void printInstance(std::ostream& stream, kel::Index row) const;
  /// Throws when ids, rows and buffers do not fit together, and says what is wrong.
  void verifyConsistency() const;
  kel::String getImplementationName() const override { return "EntityStorage"; }

  /// Whether a storage lives at that address, which is not read.
  static bool isAlive(const EntityStorage* storage);

protected:
  ~EntityStorage() override;

private:
  /// Where an instance is.
  struct Place
  {
    EntityStorage* storage;
    kel::Index row;
  };
  using Lock = std::unique_lock<std::recursive_mutex>;
  using Locks = std::pair<Lock, Lock>;
  Lock lock() const;
  Locks lockWith(const EntityStorage* other) const;
  void addColumn(Attribute* attribute);
  void* typedData(const Attribute* attribute, const char* typeName) const;
  std::size_t columnOf(const Attribute* attribute) const;
  std::size_t matchingColumn(const Attribute& attribute) const;
  static Place find(EntityPtr instance);
  void copyRow(kel::Index row, const Place& from);
  EntityPtr copyPlace(const Place& from);
  template <class F> void forEachColumn(F&& visit) const;
  void requireRoom(std::size_t count) const;
  kel::Index appendRows(std::size_t count, bool initialize);
  void popRow();
  kel::UInt32 enter(kel::Index row);
  void finish(kel::Index row);
  void setNumRows(std::size_t numRows);
  void sizeChanged();
  [[noreturn]] void fail(const kel::String& text) const;

  kel::ref_ptr<EntityModel> m_model;
  AttributePtrVector m_attributes;
  BufferTable m_buffers;
  std::vector<kel::ref_ptr<Value>> m_sharedValues; // of shared attributes; null before first use
  kel::ref_ptr<BufferT<EntityPtr>> m_instances;    // row -> instance, nothing for a hole
  kel::ref_ptr<EntityData> m_data;
  InstanceTable m_table;
  std::vector<kel::Index> m_holes;
  std::size_t m_size = 0;
  Rows m_rows;
  bool m_useInstanceTable;
  mutable std::recursive_mutex m_mutex;
};

} // namespace kelData
