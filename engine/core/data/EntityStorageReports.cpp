#include "kelData/EntityStorage.h"
#include <algorithm>
#include <iostream>
#include <stdexcept>

namespace kelData {

void EntityStorage::print() const
{
  print(std::cout);
  std::cout.flush();
}

void EntityStorage::print(std::ostream& stream) const
{
  stream << fullName() << ": " << m_size << " instances of " << m_model->fullName() << '\n';
  for (kel::Index row = 0; row < getNumRows(); ++row)
    if (indexToId(row) != EntityPtr::NO_ID) printInstance(stream, row);
}

void EntityStorage::printInstance(std::ostream& stream, kel::Index row) const
{
  stream << fullName() << EntityPtr::TransformToAscii(indexToId(row)) << '\n';
  for (std::size_t column = 0; column < m_buffers.size(); ++column) {
    const Attribute& attribute = *m_attributes[column];
    const kel::String text = m_buffers[column] ? attribute.toString(m_buffers[column]->at(row)) : "shared";
    stream << "  " << attribute.getName() << ": " << text << '\n';
  }
}

void EntityStorage::verifyConsistency() const
{
  const auto guard = lock();
  std::vector<kel::Index> holes = m_holes;
  std::sort(holes.begin(), holes.end());
  if (std::adjacent_find(holes.begin(), holes.end()) != holes.end()) fail("has a hole twice");
  if (m_size + holes.size() != getNumRows()) fail("has another size than its rows say");
  if (m_useInstanceTable && !isHeld() && !holes.empty()) fail("has holes, which its rows must not have");
  const Array<EntityPtr> instances = getInstances();
  for (kel::Index row = 0; row < instances.size(); ++row) {
    const EntityPtr& instance = instances.at(row);
    const bool isHole = std::binary_search(holes.begin(), holes.end(), row);
    const bool fits = isHole ? instance == EntityPtr()
                             : instance.getStorage() == this && idToIndex(instance.getId()) == row;
    if (!fits) fail("has a wrong id in row " + std::to_string(row));
  }
  for (std::size_t column = 0; column < m_buffers.size(); ++column) {
    const Attribute& attribute = *m_attributes[column];
    const Buffer* buffer = m_buffers[column].get();
    if (!buffer != attribute.isShared() ||
        (buffer && (buffer->size() != getNumRows() || buffer->capacity() < capacity() ||
                    buffer->getElementSize() != attribute.getElementSize())))
      fail("has a wrong buffer for attribute '" + attribute.getName() + "'");
  }
}

} // namespace kelData
