#pragma once
#include "kel/ByteAllocator.h"
#include "kel/Types.h"
#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace kel {

/// Prints what index is outside which size and ends the process. `line` is that of the test.
[[noreturn]] void failIndex(unsigned line, UInt64 index, UInt64 size);

/// Elements that are moved by a copy of their bytes.
template <class T> struct PodElements
{
  static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

  /// What `resize` fills new slots with.
  inline static const T s_initializer{};

  static void move(T* to, T* from, UInt64 count)
  {
    if (count != 0) std::memcpy(static_cast<void*>(to), static_cast<const void*>(from), count * sizeof(T));
  }
  static void fill(T* slots, UInt64 count) { std::uninitialized_fill_n(slots, count, s_initializer); }
  static void destroy(T*, UInt64) {}
};

/// Elements that are copied and destroyed one by one.
template <class T> struct ObjectElements
{
  static void move(T* to, T* from, UInt64 count)
  {
    std::uninitialized_copy_n(from, count, to);
    destroy(from, count);
  }
  static void fill(T* slots, UInt64 count) { std::uninitialized_value_construct_n(slots, count); }
  static void destroy(T* elements, UInt64 count) { std::destroy_n(elements, count); }
};

/// What growable arrays have in common. A capacity is 0, with a null buffer, or at least 4; the buffer is
/// aligned to 16 bytes. References to elements hold until the array grows, shrinks or is cleared.
template <class T, class Allocator, class Elements> class VectorStorage
{
public:
  using value_type = T;
  using iterator = T*;
  using const_iterator = const T*;

  explicit VectorStorage(const Allocator& allocator = Allocator()) : m_allocator(allocator) {}
  /// That many default elements.
  explicit VectorStorage(UInt64 count, const Allocator& allocator = Allocator()) : VectorStorage(allocator)
  {
    resize(count);
  }
  VectorStorage(const VectorStorage& other) : VectorStorage(other.m_allocator)
  {
    reserve(other.m_size);
    for (const T& element : other) push_back(element);
  }
  VectorStorage(VectorStorage&& other) noexcept : VectorStorage(other.m_allocator) { swap(other); }
  VectorStorage& operator=(VectorStorage other) noexcept
  {
    swap(other);
    return *this;
  }
  ~VectorStorage()
  {
    Elements::destroy(m_buffer, m_size);
    deallocate(m_buffer, m_capacity);
  }

  UInt64 size() const { return m_size; }
  bool empty() const { return m_size == 0; }
  /// Elements that the buffer holds.
  UInt64 capacity() const { return m_capacity; }
  /// The estimate of the size that is needed, by which `clear` decides about the buffer.
  Real32 smoothedSize() const { return m_smoothedSize; }

  /// The first element, null before the first allocation; a view.
  T* ptr() { return m_buffer; }
  const T* ptr() const { return m_buffer; }
  iterator begin() { return m_buffer; }
  iterator end() { return m_buffer + m_size; }
  const_iterator begin() const { return m_buffer; }
  const_iterator end() const { return m_buffer + m_size; }

  /// An element, the first and the last one, not tested.
  T& operator[](UInt64 index) { return m_buffer[index]; }
  const T& operator[](UInt64 index) const { return m_buffer[index]; }
  const T& front() const { return m_buffer[0]; }
  const T& back() const { return m_buffer[m_size - 1]; }
  /// The element of an index; one that is not below the size ends the process.
  const T& at(UInt64 index) const
  {
    if (index >= m_size) failIndex(__LINE__, index, m_size);
    return m_buffer[index];
  }

  /// Appends a copy; a full buffer grows to twice the size, computed in single precision.
  void push_back(const T& element)
  {
    if (m_size == m_capacity) return growAndPush(element);
    new (m_buffer + m_size) T(element);
    ++m_size;
  }
  /// Provides room for exactly `count` elements, at least 4; never shrinks.
  void reserve(UInt64 count)
  {
    if (count > m_capacity) reallocate(count);
  }
  /// New elements are default ones. The buffer grows to exactly what is needed, and shrinks when less than a
  /// quarter of it stays.
  void resize(UInt64 count)
  {
    if (count > m_size) {
      reserve(count);
      Elements::fill(m_buffer + m_size, count - m_size);
      m_size = count;
      return;
    }
    const UInt64 dropped = m_size - count;
    m_size = count;
    Elements::destroy(m_buffer + count, dropped);
    if (count < static_cast<UInt64>(static_cast<Real>(m_capacity) * 0.25)) reallocate(count);
  }

protected:
  /// Drops all elements, and the buffer for a smaller one where it is more than four times what `smooth` says
  /// of the size and the estimate so far.
  void clear(Real32 (*smooth)(Real32 size, Real32 smoothed))
  {
    if (m_size == 0) return;
    const auto size = static_cast<Real32>(m_size);
    const UInt64 dropped = std::exchange(m_size, 0);
    Elements::destroy(m_buffer, dropped);
    m_smoothedSize = smooth(size, m_smoothedSize);
    if (0.25f > m_smoothedSize / static_cast<Real32>(m_capacity))
      reallocate(static_cast<UInt64>(m_smoothedSize));
  }
  void swap(VectorStorage& other) noexcept
  {
    std::swap(m_size, other.m_size);
    std::swap(m_capacity, other.m_capacity);
    std::swap(m_buffer, other.m_buffer);
    std::swap(m_allocator, other.m_allocator);
    std::swap(m_smoothedSize, other.m_smoothedSize);
  }

  static constexpr UInt64 MIN_CAPACITY = 4;
  static constexpr std::size_t ALIGNMENT = 16;

  UInt64 m_size = 0;

private:
  static_assert(alignof(T) <= ALIGNMENT);

  T* allocate(UInt64 count)
  {
    if (count > ~std::size_t(0) / sizeof(T)) throw std::bad_alloc();
    return static_cast<T*>(m_allocator.allocateBytes(count * sizeof(T), ALIGNMENT));
  }
  void deallocate(T* buffer, UInt64 count) { m_allocator.deallocateBytes(buffer, count * sizeof(T)); }

  void reallocate(UInt64 count)
  {
    const UInt64 capacity = std::max(count, MIN_CAPACITY);
    T* buffer = allocate(capacity);
    Elements::move(buffer, m_buffer, m_size);
    deallocate(std::exchange(m_buffer, buffer), std::exchange(m_capacity, capacity));
  }
  [[gnu::noinline]] void growAndPush(const T& element)
  {
    const T copy(element); // the element may lie in the buffer that goes
    auto doubled = static_cast<Real32>(m_size);
    doubled += doubled;
    reallocate(static_cast<UInt64>(doubled));
    new (m_buffer + m_size) T(copy);
    ++m_size;
  }

  UInt64 m_capacity = 0;
  T* m_buffer = nullptr;
  Allocator m_allocator;
  Real32 m_smoothedSize = 0;
};

/// Growable array of elements that are moved by a copy of their bytes.
template <class T, class Allocator = ByteAllocator>
class VectorPOD : public VectorStorage<T, Allocator, PodElements<T>>
{
  using Base = VectorStorage<T, Allocator, PodElements<T>>;
  using Base::m_size;

public:
  using Base::Base;

  /// Drops the last element. Of an empty vector the size wraps to the largest one.
  void pop_back() { --m_size; }
  /// Drops an element, not tested. Of an empty vector the size wraps to the largest one.
  void erase(UInt64 index) { erase(index, index + 1); }
  /// Moves the elements from `end` on to `begin`, not tested; the size changes by the distance.
  void erase(UInt64 begin, UInt64 end)
  {
    for (UInt64 from = end; from < m_size; ++from) (*this)[begin + (from - end)] = (*this)[from];
    m_size -= end - begin;
  }
  /// Drops all elements and keeps the buffer, unless it has been far too large for some time.
  void clear()
  {
    Base::clear([](Real32 size, Real32 smoothed) {
      return static_cast<Real32>(Real(std::max(size, smoothed) * 0.8f) + Real(size) * (1 - Real(0.8f)));
    });
  }
};

/// The estimate of a needed size after a `clear` in single precision alone.
inline Real32 smoothSize(Real32 size, Real32 smoothed)
{
  return std::max(size, smoothed) * 0.8f + size * (1 - 0.8f);
}

/// Growable array of elements with constructors and destructors.
template <class T, class Allocator = ByteAllocator>
class Vector : public VectorStorage<T, Allocator, ObjectElements<T>>
{
  using Base = VectorStorage<T, Allocator, ObjectElements<T>>;
  using Base::m_size;

public:
  using Base::Base;

  /// The index of the first equal element, the size if there is none.
  template <class U> UInt64 find(const U& element) const
  {
    return static_cast<UInt64>(std::find(this->begin(), this->end(), element) - this->begin());
  }
  /// Drops the first equal element, or all of them; whether there was one.
  template <class U> bool findAndErase(const U& element, bool all = false)
  {
    bool found = false;
    for (UInt64 i = 0; i < m_size;) {
      if (!((*this)[i] == element)) {
        ++i;
        continue;
      }
      std::move(this->begin() + i + 1, this->end(), this->begin() + i);
      --m_size;
      std::destroy_at(this->end());
      if (!all) return true;
      found = true;
    }
    return found;
  }
  /// Drops all elements and keeps the buffer, unless it has been far too large for some time.
  void clear() { Base::clear(smoothSize); }
};

} // namespace kel
