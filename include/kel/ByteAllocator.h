#pragma once
#include <cstddef>

namespace kel {

/// Raw memory for the engine's containers.
class ByteAllocator
{
public:
  /// Memory of `size` bytes at an address that is a multiple of `alignment`, a power of two. Null for size 0;
  /// throws `std::bad_alloc` when there is no memory. Give it back with `deallocateBytes`.
  void* allocateBytes(std::size_t size, std::size_t alignment) const;
  /// Frees memory from any allocator; null is allowed. `size` is that of the allocation.
  void deallocateBytes(void* memory, std::size_t size) const noexcept;
};

} // namespace kel
