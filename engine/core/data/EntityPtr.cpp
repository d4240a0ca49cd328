#include "kelData/EntityPtr.h"
#include "kelData/EntityStorage.h"
#include <iostream>
#include <stdexcept>

namespace kelData {

EntityStorage* EntityPtr::getStorage() const
{
  return EntityStorage::isAlive(m_storage) ? m_storage : nullptr;
}

EntityStorage& EntityPtr::requireStorage() const
{
  if (EntityStorage* storage = getStorage()) return *storage;
  throw std::logic_error("an entity pointer has no storage");
}

kel::Index EntityPtr::calculateIndex() const
{
  const EntityStorage* storage = getStorage();
  return storage ? storage->idToIndex(m_id) : EntityStorage::NO_INDEX;
}

bool EntityPtr::isValid() const { return calculateIndex() != EntityStorage::NO_INDEX; }

void EntityPtr::destroy()
{
  if (EntityStorage* storage = getStorage()) storage->destroyInstance(m_id);
}

void EntityPtr::transfer(EntityStorage& storage) { *this = storage.transferInstance(*this); }

EntityPtr EntityPtr::copy() const { return copy(requireStorage()); }

EntityPtr EntityPtr::copy(EntityStorage& storage) const { return storage.copyInstance(*this); }

void EntityPtr::copyAttributes(const EntityPtr& from) { requireStorage().copyAttributes(*this, from); }

void EntityPtr::print() const
{
  print(std::cout);
  std::cout.flush();
}

void EntityPtr::print(std::ostream& stream) const
{
  const kel::Index row = calculateIndex();
  if (row == EntityStorage::NO_INDEX)
    stream << TransformToAscii(NO_ID) << '\n';
  else
    m_storage->printInstance(stream, row);
}

kel::String EntityPtr::TransformToAscii(kel::UInt32 id)
{
  return id == NO_ID ? "none" : "#" + std::to_string(id);
}

EntityPtr EntityRange::at(kel::UInt32 number) const
{
  EntityStorage* storage = getStorage();
  if (!storage || number >= size() || begin + number >= storage->getNumRows())
    throw std::out_of_range("index of an entity is out of range");
  return {storage, storage->indexToId(begin + number)};
}

} // namespace kelData
