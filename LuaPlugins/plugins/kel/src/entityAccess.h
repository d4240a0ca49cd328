#pragma once
#include "kelData/EntityStorage.h"
#include <stdexcept>

namespace kel {
class Device;
}

/// How scripts reach entities: rows that objects hold are none of theirs to make, move or end.
namespace entities {

inline kelData::EntityStorage& own(kelData::EntityStorage& storage)
{
  if (storage.isHeld())
    throw std::logic_error("the rows of entity storage '" + storage.getName() + "' belong to objects");
  return storage;
}
inline kelData::EntityPtr& own(kelData::EntityPtr& instance)
{
  if (kelData::EntityStorage* storage = instance.getStorage()) own(*storage);
  return instance;
}

} // namespace entities
