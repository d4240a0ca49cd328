#pragma once
#include "kel/IndexRange32.h"
#include "kel/String.h"
#include "kel/Types.h"
#include <ostream>

namespace kelData {

class EntityStorage;

/// Names one instance by its storage and id. A value that owns nothing and keeps nothing alive: an instance
/// that is gone is noticed, and so is a storage.
///
/// What needs a living instance throws `std::logic_error` without one.
class EntityPtr
{
public:
  /// The id of no instance.
  static constexpr kel::UInt32 NO_ID = 0xFFFFFFFF;

  /// Names nothing.
  EntityPtr() = default;
  EntityPtr(EntityStorage* storage, kel::UInt32 id) : m_storage(storage), m_id(id) {}

  /// The storage, null for none and for one that is gone. Not owned.
  EntityStorage* getStorage() const;
  kel::UInt32 getId() const { return m_id; }
  /// Names another instance from now on.
  void init(EntityStorage* storage, kel::UInt32 id) { *this = EntityPtr(storage, id); }
  /// The row of the instance; `EntityStorage::NO_INDEX` if it is gone.
  kel::Index calculateIndex() const;
  /// Whether the instance lives.
  bool isValid() const;

  /// Destroys the instance, if it lives.
  void destroy();
  /// Moves the instance to another storage, whose attributes it has from then on, and names it there.
  void transfer(EntityStorage& storage);
  /// A new instance with the same values, in the same storage or in another one.
  EntityPtr copy() const;
  EntityPtr copy(EntityStorage& storage) const;
  /// Takes over the values of the attributes that another instance has, too.
  void copyAttributes(const EntityPtr& from);

  /// Writes the instance's name and its attributes, a line each, to standard output or to a stream.
  void print() const;
  void print(std::ostream& stream) const;
  /// An id as a text: "#" and the number, "none" for that of no instance.
  static kel::String TransformToAscii(kel::UInt32 id);

  friend bool operator==(const EntityPtr&, const EntityPtr&) = default;

private:
  EntityStorage& requireStorage() const;

  EntityStorage* m_storage = nullptr;
  kel::UInt32 m_id = NO_ID;
};

/// Rows of a storage that follow one another. A value that owns nothing; rows that move take no notice of it.
class EntityRange : public kel::IndexRange
{
public:
  /// No rows.
  EntityRange() = default;
  /// The rows from `first` up to `last`, without the latter.
  EntityRange(EntityStorage* storage, kel::Index first, kel::Index last)
      : kel::IndexRange{first, last}, m_storage(storage, EntityPtr::NO_ID)
  {}

  /// The storage, null for none and for one that is gone. Not owned.
  EntityStorage* getStorage() const { return m_storage.getStorage(); }
  /// The instance in the row of that number in the range, an invalid one for a hole. Throws
  /// `std::out_of_range` for a number or a row that is not there.
  EntityPtr at(kel::UInt32 number) const;

private:
  EntityPtr m_storage;
};

} // namespace kelData
