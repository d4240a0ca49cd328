#pragma once
#include "kel/Component.h"
#include "kel/IndexRange32.h"
#include "kel/ref_ptr.h"
#include "kelData/Value.h"
#include <cstddef>

namespace kelData {

class Buffer;
class EntityStorage;

/// Ends the process because of an index that is not below the size.
[[noreturn]] void failArrayIndex(kel::UInt32 index, kel::UInt32 size);

/// A view of elements that lie in a row. It keeps the buffer's memory, not the elements.
template <class T> class Array
{
public:
  /// No elements.
  Array() = default;
  /// A range of a buffer; `elements` is the first one of the range.
  Array(T* elements, const Buffer* buffer, kel::IndexRange32 range)
      : m_elements(elements), m_buffer(buffer), m_range(range)
  {}

  /// The element at an index; ends the process for one that is not below the size.
  const T& at(kel::UInt32 index) const
  {
    if (index >= m_range.size()) failArrayIndex(index, m_range.size());
    return m_elements[index];
  }
  /// The first and the last element, not tested.
  const T& front() const { return m_elements[0]; }
  const T& back() const { return m_elements[m_range.size() - 1]; }
  kel::UInt32 size() const { return m_range.size(); }
  bool empty() const { return m_range.empty(); }
  /// The elements' indexes in the buffer that they are in.
  const kel::IndexRange32& getRange() const { return m_range; }
  /// The buffer that the elements are in, null for none. Not owned.
  const Buffer* getBuffer() const { return m_buffer.get(); }

private:
  T* m_elements = nullptr;
  kel::ref_ptr<const Buffer> m_buffer;
  kel::IndexRange32 m_range;
};

using IndexArray = Array<kel::Index>;

/// A growable array of elements in memory that never moves: address space for all elements is reserved with
/// the first ones and filled with memory as the buffer grows. Its start is aligned to a page.
///
/// A buffer of an entity storage is one of its columns: the storage alone makes it longer or shorter, and
/// others that try get `std::logic_error`.
class Buffer : public kel::Component
{
public:
  /// Elements that a buffer can ever hold, unless it asks for another bound.
  static constexpr std::size_t MAX_SIZE = std::size_t(1) << 24;
  /// What a full buffer of a C++ type multiplies its capacity by, as far as its bound lets it.
  static constexpr double CAPACITY_MULTIPLIER = 2;

  /// An empty buffer; from null one without elements of any kind, whose elements no call makes.
  explicit Buffer(const Format* format) : Buffer(kel::Name(), format) {}
  Buffer(const kel::Name& name, const Format* format);
  /// An empty buffer of plain memory, which nothing initialises. `elementSize` is in bytes, above 0; `format`
  /// says what the memory holds, null if no format does. Throws `std::bad_alloc` without address space.
  Buffer(const kel::Name& name, std::size_t elementSize, const Format* format = nullptr,
         std::size_t maxSize = MAX_SIZE);
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;

  /// A value that follows the size, and one that follows the capacity, from the next change or `rebind` on.
  ValueRefT<kel::UInt> sizeParameter;
  ValueRefT<kel::UInt> capacityParameter;

  /// The type of the elements, null if they have none. Not owned.
  const Type* getType() const { return m_format ? m_format->getType() : nullptr; }
  /// The format of the elements, null if they have none. Not owned.
  Format* getFormat() { return m_format; }
  const Format* getFormat() const { return m_format; }
  /// The storage that has this buffer as a column, null for none. Not owned.
  EntityStorage* getStorage() { return m_storage; }
  const EntityStorage* getStorage() const { return m_storage; }

  /// The first element; the same address from the first `reserve` on as long as the buffer lives.
  std::byte* data() const { return m_data; }
  /// The element of an index, not tested.
  std::byte* at(std::size_t index) const { return m_data + index * m_elementSize; }
  std::size_t getElementSize() const { return m_elementSize; }
  /// The scalars of an element: 1 for a number or a text, 9 for a matrix of three rows; of all values where
  /// an element of an entity storage has several.
  std::size_t getElementArraySize() const
  {
    return m_format ? m_format->getNumScalars() * getNumValues() : 1;
  }
  /// Elements in use.
  std::size_t size() const { return m_size; }
  /// The indexes of the elements in use.
  const kel::IndexRange32& getRange() const { return m_range; }
  /// Elements that there is memory for.
  std::size_t capacity() const { return m_capacity; }

  /// Provides memory for `size` elements, zero where it is new. Throws
  /// `std::length_error` beyond the bound.
  void reserve(std::size_t size);
  /// Ends elements, or adds some with the format's default, which plain data may do without.
  void resize(std::size_t size, bool initialize = true);
  /// Ends all elements; the memory stays.
  void clear() { resize(0); }

  /// Notes that all elements have changed, one of them, those of an array of indexes, or a range of them.
  /// Indexes beyond the size count for nothing.
  void commit() { commit(m_range); }
  void commit(kel::Index index)
  {
    commit(kel::IndexRange32{index, index == ~kel::Index(0) ? index : index + 1});
  }
  void commit(const IndexArray& indexes);
  void commit(const kel::IndexRange32& range);
  /// The least range with all elements that were noted since the last call.
  kel::IndexRange32 takeChanges();

  /// Sets the parameters to the size and the capacity.
  void rebind();
  /// Writes the name and a line for each element to standard output.
  void print() const;
  kel::String getImplementationName() const override { return "Buffer"; }

protected:
  ~Buffer() override;
  /// Adds an element that is a copy of another one.
  void append(const void* element);

private:
  friend class EntityStorage;
  void requireOwnSize() const;
  std::size_t bound() const { return m_reservedBytes / m_elementSize; }
  std::size_t getNumValues() const { return m_elementSize / m_format->getElementSize(); }
  void reserveAddresses();
  void setSize(std::size_t size);

  Format* m_format = nullptr;
  EntityStorage* m_storage = nullptr;
  std::size_t m_elementSize;
  std::size_t m_reservedBytes;
  std::size_t m_committedBytes = 0;
  std::size_t m_capacity = 0;
  std::size_t m_size = 0;
  kel::IndexRange32 m_range;
  kel::IndexRange32 m_changes;
  std::byte* m_data = nullptr;
};

/// A buffer of a C++ type.
template <class T> class BufferT : public Buffer
{
public:
  BufferT() : Buffer(kelData::getFormat<T>()) {}
  explicit BufferT(const kel::Name& name) : Buffer(name, kelData::getFormat<T>()) {}

  /// The elements in use; a view, good until one is added or ended.
  Array<T> getArray() const { return {elements(), this, getRange()}; }
  /// The element at an index; ends the process for one that is not below the size.
  const T& at(kel::UInt32 index) const
  {
    if (index >= getRange().size()) failArrayIndex(index, getRange().size());
    return elements()[index];
  }
  /// The first and the last element, not tested.
  const T& front() const { return elements()[0]; }
  const T& back() const { return elements()[getRange().size() - 1]; }
  bool empty() const { return getRange().empty(); }
  /// Adds an element; throws `std::length_error` where the bound is reached.
  void push_back(const T& element) { append(&element); }

private:
  T* elements() const { return reinterpret_cast<T*>(Buffer::at(getRange().begin)); }
};

} // namespace kelData
