#pragma once
#include "kel/Component.h"
#include <cstddef>

namespace kelData {

/// A growable array of plain values in memory that never moves: address space for all elements is reserved at
/// the start and filled with memory as the buffer grows. Its start is aligned to a page.
class Buffer : public kel::Component
{
public:
  /// Elements that a buffer can ever hold, unless it asks for another bound.
  static constexpr std::size_t MAX_SIZE = std::size_t(1) << 24;

  /// An empty buffer. `elementSize` is in bytes, above 0. Throws `std::bad_alloc` without address space.
  Buffer(const kel::Name& name, std::size_t elementSize, std::size_t maxSize = MAX_SIZE);

  /// The first element; the same address as long as the buffer lives.
  std::byte* data() const { return m_data; }
  /// The element of an index, not tested.
  std::byte* at(std::size_t index) const { return m_data + index * m_elementSize; }
  std::size_t getElementSize() const { return m_elementSize; }
  /// Elements that there is memory for.
  std::size_t capacity() const { return m_capacity; }
  /// Provides memory for `size` elements, zero where it is new. Throws `std::bad_alloc` beyond the bound.
  void reserve(std::size_t size);
  kel::String getImplementationName() const override { return "Buffer"; }

protected:
  ~Buffer() override;

private:
  std::size_t m_elementSize;
  std::size_t m_reservedBytes;
  std::size_t m_committedBytes = 0;
  std::size_t m_capacity = 0;
  std::byte* m_data;
};

} // namespace kelData
