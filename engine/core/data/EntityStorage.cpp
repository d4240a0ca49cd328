#include "kelData/EntityStorage.h"
#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <unordered_set>

namespace kelData {

namespace {

/// The living storages of the process. Never destroyed, as storages may outlive everything else.
struct Living
{
  std::mutex mutex;
  std::unordered_set<const EntityStorage*> storages;

  static Living& instance()
  {
    static Living* living = new Living;
    return *living;
  }
};

} // namespace

bool EntityStorage::isAlive(const EntityStorage* storage)
{
  if (!storage) return false;
  Living& living = Living::instance();
  const std::scoped_lock lock(living.mutex);
  return living.storages.contains(storage);
}

EntityStorage::EntityStorage(EntityModel* model, Rows rows)
    : kel::Component(model->getName()), m_model(model), m_instances(new BufferT<EntityPtr>("instances")),
      m_rows(rows), m_useInstanceTable(model->useInstanceTable())
{
  model->m_isFrozen = true;
  m_instances->m_storage = this;
  for (const auto& attribute : model->getAttributes()) addColumn(attribute.get());
  Living& living = Living::instance();
  const std::scoped_lock lock(living.mutex);
  living.storages.insert(this);
}

EntityStorage::~EntityStorage()
{
  {
    Living& living = Living::instance();
    const std::scoped_lock lock(living.mutex);
    living.storages.erase(this);
  }
  while (getNumRows() > 0) popRow();
  forEachColumn([](const Attribute&, Buffer& buffer) { buffer.m_storage = nullptr; });
  m_instances->m_storage = nullptr;
}

EntityStorage::Lock EntityStorage::lock() const
{
  Lock lock(m_mutex, std::defer_lock);
  if (EntityModel::getThreadSafe()) lock.lock();
  return lock;
}

/// Both at once, so that no two threads wait for each other. `other` may be null or this storage.
EntityStorage::Locks EntityStorage::lockWith(const EntityStorage* other) const
{
  if (!other || other == this) return {lock(), Lock()};
  Locks locks{Lock(m_mutex, std::defer_lock), Lock(other->m_mutex, std::defer_lock)};
  if (EntityModel::getThreadSafe()) std::lock(locks.first, locks.second);
  return locks;
}

void EntityStorage::fail(const kel::String& text) const
{
  throw std::logic_error("entity storage '" + getName() + "' " + text);
}

// ---- Attributes and their buffers.

/// Calls `visit` with each attribute that has a buffer, and the buffer.
template <class F> void EntityStorage::forEachColumn(F&& visit) const
{
  for (std::size_t column = 0; column < m_buffers.size(); ++column)
    if (m_buffers[column]) visit(*m_attributes[column], *m_buffers[column]);
}

void EntityStorage::addColumn(Attribute* attribute)
{
  attribute->m_isUsed = true;
  m_attributes.push_back(attribute);
  m_sharedValues.emplace_back();
  m_buffers.emplace_back();
  if (attribute->isShared()) return;
  kel::ref_ptr<Buffer> buffer =
      new Buffer(attribute->getName(), attribute->getElementSize(), attribute->getDefaultFormat());
  buffer->m_storage = this;
  buffer->reserve(m_instances->capacity());
  for (std::size_t row = 0; row < getNumRows(); ++row) attribute->construct(buffer->at(row));
  buffer->setSize(getNumRows());
  m_buffers.back() = buffer;
}

void EntityStorage::addCustomAttribute(Attribute* attribute)
{
  const kel::ref_ptr<Attribute> keep(attribute);
  if (!attribute || getAttribute(attribute->getName())) fail("cannot have another attribute of that name");
  addColumn(attribute);
}

Attribute* EntityStorage::getAttribute(const kel::Name& name) const
{
  const auto found = std::find_if(m_attributes.begin(), m_attributes.end(),
                                  [&](const auto& attribute) { return attribute->getName() == name.str(); });
  return found == m_attributes.end() ? nullptr : found->get();
}

std::size_t EntityStorage::columnOf(const Attribute* attribute) const
{
  if (attribute && attribute->m_column < m_attributes.size() &&
      m_attributes[attribute->m_column].get() == attribute)
    return attribute->m_column;
  const auto found = std::find(m_attributes.begin(), m_attributes.end(), attribute);
  return static_cast<std::size_t>(found - m_attributes.begin());
}

std::size_t EntityStorage::matchingColumn(const Attribute& attribute) const
{
  const std::size_t column = columnOf(&attribute);
  if (column < m_attributes.size()) return column;
  const auto found = std::find_if(m_attributes.begin(), m_attributes.end(),
                                  [&](const auto& own) { return own->matches(attribute); });
  return static_cast<std::size_t>(found - m_attributes.begin());
}

Buffer* EntityStorage::getBuffer(const Attribute* attribute) const
{
  const std::size_t column = columnOf(attribute);
  return column < m_buffers.size() ? m_buffers[column].get() : nullptr;
}

void* EntityStorage::typedData(const Attribute* attribute, const char* typeName) const
{
  const Buffer* buffer = getBuffer(attribute);
  if (!buffer || std::strcmp(attribute->getImplementationTypeName(), typeName) != 0)
    fail("has no such attribute of that type");
  return buffer->data();
}

Value* EntityStorage::getSharedValue(const Attribute* attribute)
{
  const std::size_t column = columnOf(attribute);
  const auto* shared = dynamic_cast<const SharedAttribute*>(attribute);
  if (!shared || column == m_attributes.size()) return nullptr;
  if (!m_sharedValues[column]) {
    const kel::ref_ptr<Value> value = new Value(shared->getName(), shared->getDefaultFormat());
    addObject(value.get());
    try {
      value->setExpression(shared->getExpression());
    } catch (...) {
      removeObject(value.get());
      throw;
    }
    m_sharedValues[column] = value;
  }
  return m_sharedValues[column].get();
}

EntityData* EntityStorage::createData()
{
  m_data = new EntityData;
  for (const auto& buffer : m_buffers)
    m_data->columns.push_back(buffer ? Data{buffer->getFormat(), buffer->data(), buffer->size()} : Data());
  return m_data.get();
}

// ---- Memory.

std::size_t EntityStorage::capacity() const { return m_instances->capacity(); }

std::size_t EntityStorage::getNumBytes() const
{
  std::size_t bytes = 0;
  forEachColumn([&](const Attribute&, const Buffer& b) { bytes += b.capacity() * b.getElementSize(); });
  return bytes;
}

void EntityStorage::reserve(std::size_t numRows)
{
  if (numRows <= capacity()) return;
  forEachColumn([&](const Attribute&, Buffer& buffer) { buffer.reserve(numRows); });
  m_instances->reserve(numRows);
  if (capacityParameter) capacityParameter->set(kel::UInt(capacity()));
}

std::size_t EntityStorage::presize(std::size_t numRows, std::size_t margin)
{
  if (numRows > capacity()) {
    reserve(numRows);
    reserve(numRows + std::min(margin, std::max(Buffer::MAX_SIZE, numRows) - numRows));
  }
  return capacity();
}

void EntityStorage::setNumRows(std::size_t numRows)
{
  forEachColumn([&](const Attribute&, Buffer& buffer) { buffer.setSize(numRows); });
  m_instances->setSize(numRows);
}

void EntityStorage::sizeChanged()
{
  if (sizeParameter) sizeParameter->set(kel::UInt(m_size));
}

// ---- Rows and instances.

void EntityStorage::requireRoom(std::size_t count) const
{
  if (count > Buffer::MAX_SIZE - getNumRows() || (m_useInstanceTable && !m_table.hasRoom(count)))
    throw std::length_error("entity storage '" + getName() + "' is full");
}

/// Holes at the end, with memory that is initialised. Returns the first one.
kel::Index EntityStorage::appendRows(std::size_t count, bool initialize)
{
  const std::size_t first = getNumRows();
  requireRoom(count);
  const std::size_t end = first + count;
  if (end > capacity()) reserve(std::min(std::max({end, 2 * capacity(), std::size_t(16)}), Buffer::MAX_SIZE));
  forEachColumn([&](const Attribute& attribute, Buffer& buffer) {
    if (!initialize && attribute.isPlain()) return;
    for (std::size_t row = first; row < end; ++row) attribute.construct(buffer.at(row));
  });
  auto* instances = reinterpret_cast<EntityPtr*>(m_instances->data());
  std::uninitialized_fill(instances + first, instances + end, EntityPtr());
  setNumRows(end);
  return static_cast<kel::Index>(first);
}

void EntityStorage::popRow()
{
  const std::size_t last = getNumRows() - 1;
  forEachColumn([&](const Attribute& attribute, Buffer& buffer) { attribute.destroy(buffer.at(last)); });
  setNumRows(last);
}

/// Makes an instance of a hole.
kel::UInt32 EntityStorage::enter(kel::Index row)
{
  const kel::UInt32 id = m_useInstanceTable ? m_table.add(row) : row;
  reinterpret_cast<EntityPtr*>(m_instances->data())[row] = EntityPtr(this, id);
  ++m_size;
  return id;
}

void EntityStorage::finish(kel::Index row)
{
  if (m_model->hasConstructor()) m_model->getSource()->construct({this, indexToId(row)});
}

EntityPtr EntityStorage::createInstance()
{
  const auto guard = lock();
  kel::Index row = 0;
  if (m_holes.empty()) {
    row = appendRows(1, true);
  } else {
    if (m_useInstanceTable && !m_table.hasRoom(1)) fail("has no more ids");
    row = m_holes.back();
    forEachColumn([&](const Attribute& attribute, Buffer& buffer) { attribute.setDefaults(buffer.at(row)); });
    m_holes.pop_back();
  }
  const kel::UInt32 id = enter(row);
  sizeChanged();
  finish(row);
  return {this, id};
}

EntityRange EntityStorage::createInstances(std::size_t count)
{
  const auto guard = lock();
  const kel::Index first = appendRows(count, true);
  const auto end = static_cast<kel::Index>(first + count);
  for (kel::Index row = first; row < end; ++row) enter(row);
  sizeChanged();
  for (kel::Index row = first; row < end; ++row) finish(row);
  return {this, first, end};
}

void EntityStorage::resize(std::size_t numInstances, bool initialize)
{
  const auto guard = lock();
  if (numInstances > m_size) {
    const std::size_t count = numInstances - m_size;
    const kel::Index first = appendRows(count, initialize);
    for (kel::Index row = first; row < first + count; ++row) enter(row);
    sizeChanged();
    if (initialize)
      for (kel::Index row = first; row < first + count; ++row) finish(row);
  }
  for (std::size_t row = getNumRows(); m_size > numInstances; --row)
    destroyInstance(indexToId(static_cast<kel::Index>(row - 1)));
}

void EntityStorage::destroyInstance(EntityPtr instance)
{
  if (instance == EntityPtr(this, instance.getId())) destroyInstance(instance.getId());
}

void EntityStorage::destroyInstance(kel::UInt32 id)
{
  const auto guard = lock();
  const kel::Index row = idToIndex(id);
  if (row == NO_INDEX) return;
  auto* instances = reinterpret_cast<EntityPtr*>(m_instances->data());
  if (m_useInstanceTable) m_table.remove(id);
  instances[row] = EntityPtr();
  --m_size;
  if (isHeld() || !m_useInstanceTable) {
    m_holes.push_back(row);
  } else {
    const std::size_t last = getNumRows() - 1;
    if (row != last) {
      copyRow(row, {this, static_cast<kel::Index>(last)});
      instances[row] = instances[last];
      m_table.move(instances[row].getId(), row);
    }
    popRow();
  }
  sizeChanged();
}

void EntityStorage::clear()
{
  const auto guard = lock();
  for (kel::Index row = 0; row < getNumRows(); ++row)
    if (const kel::UInt32 id = indexToId(row); m_useInstanceTable && id != EntityPtr::NO_ID)
      m_table.remove(id);
  while (getNumRows() > 0) popRow();
  m_holes.clear();
  m_size = 0;
  sizeChanged();
}

EntityStorage::Place EntityStorage::find(EntityPtr instance)
{
  EntityStorage* storage = instance.getStorage();
  const kel::Index row = storage ? storage->idToIndex(instance.getId()) : NO_INDEX;
  if (row == NO_INDEX) throw std::logic_error("the entity of an entity pointer is gone");
  return {storage, row};
}

/// Copies the values of attributes that match.
void EntityStorage::copyRow(kel::Index row, const Place& from)
{
  forEachColumn([&](const Attribute& attribute, Buffer& buffer) {
    const std::size_t column = from.storage->matchingColumn(attribute);
    if (column < from.storage->m_buffers.size())
      attribute.assign(buffer.at(row), from.storage->m_buffers[column]->at(from.row));
  });
}

EntityPtr EntityStorage::copyPlace(const Place& from)
{
  const EntityPtr copy = createInstance();
  copyRow(idToIndex(copy.getId()), from);
  return copy;
}

EntityPtr EntityStorage::transferInstance(EntityPtr instance)
{
  const auto guards = lockWith(instance.getStorage());
  const Place from = find(instance);
  if (from.storage == this) return instance;
  const EntityPtr moved = copyPlace(from);
  from.storage->destroyInstance(instance.getId());
  return moved;
}

EntityPtr EntityStorage::copyInstance(EntityPtr instance)
{
  const auto guards = lockWith(instance.getStorage());
  return copyPlace(find(instance));
}

void EntityStorage::copyAttributes(EntityPtr to, EntityPtr from)
{
  const auto guards = lockWith(from.getStorage());
  const Place target = find(to);
  if (target.storage != this) fail("does not have that instance");
  copyRow(target.row, find(from));
}

// ---- Ids.

void EntityStorage::setUseInstanceTable(bool use)
{
  if (getNumRows() != 0 || !m_table.empty()) fail("has rows already");
  m_useInstanceTable = use;
}

kel::Index EntityStorage::idToIndex(kel::UInt32 id) const
{
  const kel::Index row = m_useInstanceTable ? m_table.find(id) : id;
  return id != EntityPtr::NO_ID && indexToId(row) == id ? row : NO_INDEX;
}

kel::UInt32 EntityStorage::indexToId(kel::Index index) const
{
  return index < getNumRows() ? reinterpret_cast<const EntityPtr*>(m_instances->data())[index].getId()
                              : EntityPtr::NO_ID;
}

} // namespace kelData
