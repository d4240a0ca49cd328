#include "kelData/Buffer.h"
#include <algorithm>
#include <new>
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

Buffer::Buffer(const kel::Name& name, std::size_t elementSize, std::size_t maxSize)
    : kel::Component(name), m_elementSize(elementSize), m_reservedBytes(roundUpToPage(elementSize * maxSize))
{
  void* memory =
      mmap(nullptr, m_reservedBytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (memory == MAP_FAILED) throw std::bad_alloc();
  m_data = static_cast<std::byte*>(memory);
}

Buffer::~Buffer() { munmap(m_data, m_reservedBytes); }

void Buffer::reserve(std::size_t size)
{
  if (size <= m_capacity) return;
  const std::size_t wanted = roundUpToPage(size * m_elementSize);
  if (wanted > m_reservedBytes) throw std::bad_alloc();
  const std::size_t bytes = std::min(std::max(wanted, 2 * m_committedBytes), m_reservedBytes);
  if (mprotect(m_data, bytes, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
  m_committedBytes = bytes;
  m_capacity = bytes / m_elementSize;
}

} // namespace kelData
