#include "kel/ByteAllocator.h"
#include <algorithm>
#include <cstdlib>
#include <new>

namespace kel {

void* ByteAllocator::allocateBytes(std::size_t size, std::size_t alignment) const
{
  if (size == 0) return nullptr;
  void* memory = nullptr;
  if (posix_memalign(&memory, std::max(alignment, sizeof(void*)), size) != 0) throw std::bad_alloc();
  return memory;
}

void ByteAllocator::deallocateBytes(void* memory, std::size_t) const noexcept { std::free(memory); }

} // namespace kel
