#include "kelData/Buffer.h"
#include "kel/abort.h"
#include <algorithm>
#include <cstdio>
#include <new>
#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>

namespace kelData {

namespace {
std::size_t roundUpToPage(std::size_t bytes)
{
  static const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  return (bytes + page - 1) / page * page;
}
} // namespace

void failArrayIndex(kel::UInt32 index, kel::UInt32 size)
{
  kel::fail(kel::buildErrorString(
      "[%s:%u] kelVerify failed: `%s', Array index %llu is out of bounds, size is "
      "%llu",
      "include/kelData/Buffer", static_cast<unsigned>(__LINE__), "index < m_range.size()",
      static_cast<unsigned long long>(index), static_cast<unsigned long long>(size)));
}

Buffer::Buffer(const kel::Name& name, const Format* format)
    : kel::Component(name), m_format(const_cast<Format*>(format)), // never constant in its type
      m_elementSize(format ? format->getElementSize() : 0),
      m_reservedBytes(roundUpToPage(m_elementSize * MAX_SIZE))
{}

Buffer::Buffer(const kel::Name& name, std::size_t elementSize, const Format* format, std::size_t maxSize)
    : kel::Component(name), m_format(const_cast<Format*>(format)), m_elementSize(elementSize),
      m_reservedBytes(roundUpToPage(elementSize * maxSize))
{
  reserveAddresses();
}

Buffer::~Buffer()
{
  if (m_format && !m_format->getImplementation().isPlain)
    for (std::size_t i = 0; i < m_size; ++i) m_format->getImplementation().destroy(at(i));
  if (m_data) munmap(m_data, m_reservedBytes);
}

void Buffer::reserveAddresses()
{
  void* memory =
      mmap(nullptr, m_reservedBytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (memory == MAP_FAILED) throw std::bad_alloc();
  m_data = static_cast<std::byte*>(memory);
}

void Buffer::reserve(std::size_t size)
{
  if (size <= m_capacity || m_elementSize == 0) return;
  if (size > bound())
    throw std::length_error("buffer '" + getName() + "' cannot have more than " + std::to_string(bound()) +
                            " elements");
  if (!m_data) reserveAddresses();
  if (const std::size_t wanted = roundUpToPage(size * m_elementSize); wanted > m_committedBytes) {
    const std::size_t bytes = std::min(std::max(wanted, 2 * m_committedBytes), m_reservedBytes);
    if (mprotect(m_data, bytes, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
    m_committedBytes = bytes;
  }
  m_capacity = size;
  if (capacityParameter) capacityParameter->set(m_capacity);
}

void Buffer::resize(std::size_t size, bool initialize)
{
  requireOwnSize();
  if (!m_format) return;
  reserve(size);
  const Format::Implementation& implementation = m_format->getImplementation();
  for (std::size_t i = size; i < m_size; ++i) implementation.destroy(at(i));
  if (initialize || !implementation.isPlain)
    for (std::size_t i = m_size; i < size; ++i) implementation.construct(at(i), nullptr);
  setSize(size);
}

void Buffer::append(const void* element)
{
  requireOwnSize();
  if (m_size == m_capacity) {
    const auto wanted = static_cast<std::size_t>(static_cast<double>(m_size) * CAPACITY_MULTIPLIER);
    reserve(std::max(std::min(std::max<std::size_t>(wanted, 4), bound()), m_size + 1));
  }
  m_format->getImplementation().construct(at(m_size), element);
  setSize(m_size + 1);
}

void Buffer::setSize(std::size_t size)
{
  m_size = size;
  m_range.end = static_cast<kel::UInt32>(size);
  m_changes = {std::min(m_changes.begin, m_range.end), std::min(m_changes.end, m_range.end)};
  if (sizeParameter) sizeParameter->set(m_size);
}

void Buffer::requireOwnSize() const
{
  if (m_storage) throw std::logic_error("buffer '" + getName() + "' has the size of its entity storage");
}

void Buffer::commit(const IndexArray& indexes)
{
  for (kel::UInt32 i = 0; i < indexes.size(); ++i) commit(indexes.at(i));
}

void Buffer::commit(const kel::IndexRange32& range)
{
  const kel::UInt32 end = std::min(range.end, m_range.end);
  if (range.begin >= end) return;
  m_changes = m_changes.empty()
                  ? kel::IndexRange32{range.begin, end}
                  : kel::IndexRange32{std::min(m_changes.begin, range.begin), std::max(m_changes.end, end)};
}

kel::IndexRange32 Buffer::takeChanges() { return std::exchange(m_changes, {}); }

void Buffer::rebind()
{
  if (sizeParameter) sizeParameter->set(m_size);
  if (capacityParameter) capacityParameter->set(m_capacity);
}

void Buffer::print() const
{
  std::printf("%s: %zu elements\n", getName().c_str(), m_size);
  if (!m_format) return;
  for (std::size_t i = 0; i < m_size; ++i) {
    std::printf("%zu:", i);
    for (std::size_t value = 0; value < getNumValues(); ++value) {
      const void* element = at(i) + value * m_format->getElementSize();
      std::printf(" %s", m_format->getImplementation().print(element).c_str());
    }
    std::printf("\n");
  }
}

} // namespace kelData
