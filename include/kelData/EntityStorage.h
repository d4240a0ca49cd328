#pragma once
#include "kel/Component.h"
#include "kelData/Buffer.h"
#include "kelData/EntityModel.h"
#include "kelData/EntityPtr.h"
#include <unordered_map>
#include <vector>

namespace kelData {

/// The instances of an entity model, one row each, with one buffer an attribute.
///
/// A row never moves while its instance lives, so a pointer to a value stays good. A destroyed instance
/// leaves a hole that a later one takes. With the instance table (the default) an id is never used twice, so
/// that the id of a dead instance stays invalid; without it the id is the row.
class EntityStorage : public kel::Component
{
public:
  /// The index of no row.
  static constexpr kel::Index NO_INDEX = 0xFFFFFFFF;

  /// An empty storage; takes a reference on the model, which takes no more attributes from now on.
  explicit EntityStorage(EntityModel* model);

  EntityModel* getEntityModel() const { return m_model.get(); }
  /// Live instances.
  std::size_t size() const { return m_size; }
  bool empty() const { return m_size == 0; }
  /// Rows in use, holes included: all indices are below it.
  std::size_t getNumRows() const { return m_rowIds.size(); }
  /// Rows that there is memory for.
  std::size_t capacity() const;
  void reserve(std::size_t numRows);

  /// A new instance with the attributes' default values.
  EntityPtr createInstance();
  /// Makes a hole of an instance's row; does nothing for one that is gone.
  void destroyInstance(EntityPtr instance);
  void destroyInstance(kel::UInt32 id);
  /// Destroys all instances.
  void clear();

  /// Switches the table of ids. Only while the storage has no rows: throws `std::logic_error` otherwise.
  void setUseInstanceTable(bool use);
  bool useInstanceTable() const { return m_useInstanceTable; }
  /// The row of an id, `NO_INDEX` if its instance is gone or never was.
  kel::Index idToIndex(kel::UInt32 id) const;
  /// The id of a row, `EntityPtr::NO_ID` for a hole.
  kel::UInt32 indexToId(kel::Index index) const;

  /// The attribute's buffer, null before the first row or the first demand. Not owned.
  Buffer* getBuffer(const Attribute* attribute) const;
  Buffer* getBuffer(const kel::Name& attributeName) const;
  /// The attribute's buffer, made if it is missing, its existing rows filled with the default. Throws
  /// `std::logic_error` for an attribute of another model.
  Buffer* createBuffer(const Attribute* attribute);
  /// The first value of an attribute, index it by row; good as long as the storage lives. Throws
  /// `std::logic_error` when the attribute is unknown here or its values are not of type T.
  template <class T> T* data(const Attribute* attribute)
  {
    return static_cast<T*>(typedData(attribute, typeid(T)));
  }
  kel::String getImplementationName() const override { return "EntityStorage"; }

protected:
  ~EntityStorage() override;

private:
  void* typedData(const Attribute* attribute, std::type_index type);
  std::size_t columnOf(const Attribute* attribute) const;
  Buffer& bufferOf(std::size_t column);
  void setDefaults(kel::Index row);

  kel::ref_ptr<EntityModel> m_model;
  std::vector<kel::ref_ptr<Buffer>>
      m_buffers;                     // in the order of the model's attributes; null before first use
  std::vector<kel::UInt32> m_rowIds; // row -> id, NO_ID for a hole
  // Live instances only: a program that makes and drops objects for days must not grow by their ids.
  std::unordered_map<kel::UInt32, kel::Index> m_idRows;
  kel::UInt32 m_nextId = 0;
  std::vector<kel::Index> m_holes;
  std::size_t m_size = 0;
  bool m_useInstanceTable = true;
};

} // namespace kelData
