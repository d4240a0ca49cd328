#include "kelData/EntityStorage.h"
#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace kelData {

kel::Index EntityPtr::calculateIndex() const
{
  return m_storage ? m_storage->idToIndex(m_id) : EntityStorage::NO_INDEX;
}

bool EntityPtr::isValid() const { return calculateIndex() != EntityStorage::NO_INDEX; }

void EntityPtr::destroy()
{
  if (m_storage) m_storage->destroyInstance(m_id);
}

EntityStorage::~EntityStorage()
{
  for (const auto& buffer : m_buffers)
    if (buffer) buffer->m_storage = nullptr;
}

EntityStorage::EntityStorage(EntityModel* model) : kel::Component(model->getName()), m_model(model)
{
  model->m_frozen = true;
  m_buffers.resize(model->getAttributes().size());
}

std::size_t EntityStorage::capacity() const
{
  std::size_t rows = Buffer::MAX_SIZE;
  for (const auto& buffer : m_buffers)
    if (buffer) rows = std::min(rows, buffer->capacity());
  return rows;
}

void EntityStorage::reserve(std::size_t numRows)
{
  for (std::size_t column = 0; column < m_buffers.size(); ++column) bufferOf(column).reserve(numRows);
  m_rowIds.reserve(numRows);
}

EntityPtr EntityStorage::createInstance()
{
  kel::Index row;
  if (m_holes.empty()) {
    row = static_cast<kel::Index>(m_rowIds.size());
    for (std::size_t column = 0; column < m_buffers.size(); ++column) bufferOf(column).reserve(row + 1);
    m_rowIds.push_back(EntityPtr::NO_ID);
    for (const auto& buffer : m_buffers) buffer->setSize(row + 1);
  } else {
    row = m_holes.back();
    m_holes.pop_back();
  }
  kel::UInt32 id = row;
  if (m_useInstanceTable) {
    id = m_nextId++;
    m_idRows[id] = row;
  }
  m_rowIds[row] = id;
  setDefaults(row);
  ++m_size;
  return {this, id};
}

void EntityStorage::destroyInstance(EntityPtr instance)
{
  if (instance.getStorage() == this) destroyInstance(instance.getId());
}

void EntityStorage::destroyInstance(kel::UInt32 id)
{
  const kel::Index row = idToIndex(id);
  if (row == NO_INDEX) return;
  m_rowIds[row] = EntityPtr::NO_ID;
  m_idRows.erase(id);
  m_holes.push_back(row);
  --m_size;
}

void EntityStorage::clear()
{
  m_idRows.clear();
  m_rowIds.clear();
  for (const auto& buffer : m_buffers)
    if (buffer) buffer->setSize(0);
  m_holes.clear();
  m_size = 0;
}

void EntityStorage::setUseInstanceTable(bool use)
{
  if (!m_rowIds.empty() || m_nextId != 0)
    throw std::logic_error("entity storage '" + getName() + "' has rows already");
  m_useInstanceTable = use;
}

kel::Index EntityStorage::idToIndex(kel::UInt32 id) const
{
  if (m_useInstanceTable) {
    const auto found = m_idRows.find(id);
    return found == m_idRows.end() ? NO_INDEX : found->second;
  }
  return id < m_rowIds.size() ? m_rowIds[id] : NO_INDEX;
}

kel::UInt32 EntityStorage::indexToId(kel::Index index) const
{
  return index < m_rowIds.size() ? m_rowIds[index] : EntityPtr::NO_ID;
}

Buffer* EntityStorage::getBuffer(const Attribute* attribute) const
{
  const std::size_t column = columnOf(attribute);
  return column < m_buffers.size() ? m_buffers[column].get() : nullptr;
}

Buffer* EntityStorage::getBuffer(const kel::Name& attributeName) const
{
  return getBuffer(m_model->getAttribute(attributeName));
}

Buffer* EntityStorage::createBuffer(const Attribute* attribute)
{
  const std::size_t column = columnOf(attribute);
  if (column == m_buffers.size())
    throw std::logic_error("the attribute is not one of entity storage '" + getName() + "'");
  return &bufferOf(column);
}

Buffer& EntityStorage::bufferOf(std::size_t column)
{
  kel::ref_ptr<Buffer>& buffer = m_buffers[column];
  if (!buffer) {
    const Attribute& attribute = *m_model->getAttributes()[column];
    buffer = new Buffer(attribute.getName(), attribute.getElementSize(),
                        findFormat(attribute.getElementType().name()));
    buffer->m_storage = this;
    buffer->reserve(m_rowIds.size());
    buffer->setSize(m_rowIds.size());
    for (std::size_t row = 0; row < m_rowIds.size(); ++row)
      std::memcpy(buffer->at(row), attribute.getDefaultBytes(), attribute.getElementSize());
  }
  return *buffer;
}

void* EntityStorage::typedData(const Attribute* attribute, std::type_index type)
{
  if (!attribute || attribute->getElementType() != type)
    throw std::logic_error("an attribute of entity storage '" + getName() + "' has another type");
  return createBuffer(attribute)->data();
}

std::size_t EntityStorage::columnOf(const Attribute* attribute) const
{
  const auto& attributes = m_model->getAttributes();
  return static_cast<std::size_t>(std::find(attributes.begin(), attributes.end(), attribute) -
                                  attributes.begin());
}

void EntityStorage::setDefaults(kel::Index row)
{
  for (std::size_t column = 0; column < m_buffers.size(); ++column) {
    const Attribute& attribute = *m_model->getAttributes()[column];
    std::memcpy(m_buffers[column]->at(row), attribute.getDefaultBytes(), attribute.getElementSize());
  }
}

} // namespace kelData
