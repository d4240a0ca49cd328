#pragma once
#include "kel/HashTable.h"
#include "kel/Vector.h"

namespace kel {

/// Set that keeps the order of insertion: an array, and a table from its elements to their indices. Both hold
/// the elements, so an object in a set of `ref_ptr` has two references from it. Finding takes constant time.
template <class T, class Hash = HashFn<T>>
class SetVector
    : private VectorStorage<T, ByteAllocator,
                            std::conditional_t<std::is_pointer_v<T>, PodElements<T>, ObjectElements<T>>>
{
  using Base = VectorStorage<T, ByteAllocator,
                             std::conditional_t<std::is_pointer_v<T>, PodElements<T>, ObjectElements<T>>>;

public:
  /// The elements in order; they hold until the set changes.
  using const_iterator = const T*;
  const_iterator begin() const { return Base::begin(); }
  const_iterator end() const { return Base::end(); }

  SetVector() = default;
  SetVector(const SetVector&) = delete;
  SetVector& operator=(const SetVector&) = delete;

  using Base::at;
  using Base::back;
  using Base::capacity;
  using Base::empty;
  using Base::front;
  using Base::size;

  /// Appends an element that is not here yet; one that is keeps its place. Its address, a view.
  const T* push_back(const T& element)
  {
    if (const UInt64* index = m_indices.find(element)) return &((*this)[*index] = element);
    Base::push_back(element);
    const T* added = &Base::back();
    m_indices[*added] = this->m_size - 1;
    return added;
  }
  /// Where the element is, `end()` if it is not here.
  template <class U> const_iterator find(const U& element) const
  {
    const UInt64* index = m_indices.find(element);
    return index ? begin() + *index : end();
  }
  template <class U> bool contains(const U& element) const { return m_indices.find(element) != nullptr; }
  /// Drops all elements; the array keeps its buffer, unless that has been far too large for some time, and
  /// the table its slots.
  void clear()
  {
    m_indices.clear();
    Base::clear(smoothSize);
  }
  /// The table's number of slots.
  UInt64 tableCapacity() const { return m_indices.capacity(); }

private:
  LinearProbingHashTableImplementation<T, UInt64, Hash> m_indices;
};

} // namespace kel
