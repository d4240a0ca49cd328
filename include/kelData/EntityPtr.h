#pragma once
#include "kel/Types.h"

namespace kelData {

class EntityStorage;

/// Names one instance by its storage and id. A value that owns nothing; it outlives neither.
class EntityPtr
{
public:
  /// The id of no instance.
  static constexpr kel::UInt32 NO_ID = 0xFFFFFFFF;

  /// Names nothing.
  EntityPtr() = default;
  EntityPtr(EntityStorage* storage, kel::UInt32 id) : m_storage(storage), m_id(id) {}

  EntityStorage* getStorage() const { return m_storage; }
  kel::UInt32 getId() const { return m_id; }
  /// The row of the instance; `EntityStorage::NO_INDEX` if it is gone.
  kel::Index calculateIndex() const;
  /// Whether the instance lives.
  bool isValid() const;
  /// Destroys the instance, if it lives.
  void destroy();

  friend bool operator==(const EntityPtr&, const EntityPtr&) = default;

private:
  EntityStorage* m_storage = nullptr;
  kel::UInt32 m_id = NO_ID;
};

} // namespace kelData
