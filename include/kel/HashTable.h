#pragma once
#include "kel/ByteAllocator.h"
#include "kel/HashFn.h"
#include "kel/Types.h"
#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

namespace kel {

/// What a slot of a hash container holds. Searches pass over erased ones.
enum class SlotState : UInt8
{
  EMPTY = 0,
  ERASED = 1,
  USED = 2
};

/// Map from keys to values in a table whose capacity is a power of two, never more than about two thirds
/// full. Keys are looked for from the slot of their hash on, as far as any key was ever placed from its own
/// since the table last grew. Pointers to values hold until the table grows or the key goes.
template <class Key, class Value, class Hash = HashFn<Key>, class Allocator = ByteAllocator>
class LinearProbingHashTableImplementation
{
public:
  explicit LinearProbingHashTableImplementation(const Allocator& allocator = Allocator())
      : m_allocator(allocator)
  {}
  LinearProbingHashTableImplementation(const LinearProbingHashTableImplementation&) = delete;
  LinearProbingHashTableImplementation& operator=(const LinearProbingHashTableImplementation&) = delete;
  ~LinearProbingHashTableImplementation()
  {
    clear();
    deallocate(m_states, m_pairs, m_capacity);
  }

  /// Number of keys.
  UInt64 size() const { return m_numUsed; }
  bool empty() const { return m_numUsed == 0; }
  /// Number of slots: 0, or a power of two that is at least 4.
  UInt64 capacity() const { return m_capacity; }
  /// How many slots behind that of its hash a key may lie; -1 while the table is empty.
  Int32 maxProbeDistance() const { return m_maxProbeDistance; }

  /// The value of a key, null if the key is not here. Not owned.
  template <class K> Value* find(const K& key)
  {
    const UInt64 slot = findSlot(key);
    return slot == NO_SLOT ? nullptr : &m_pairs[slot].second;
  }
  template <class K> const Value* find(const K& key) const
  {
    const UInt64 slot = findSlot(key);
    return slot == NO_SLOT ? nullptr : &m_pairs[slot].second;
  }
  /// The value of a key, a default one if the key is new. Throws `std::bad_alloc` without memory to grow.
  template <class K> Value& operator[](const K& key)
  {
    const UInt64 needed = m_numUsed + ((m_numUsed + 1) >> 1) + 2;
    if (needed > m_capacity) grow(needed);
    const UInt64 slot = slotFor(key);
    if (m_states[slot] != SlotState::USED) {
      new (m_pairs + slot) Pair(Key(key), Value());
      m_states[slot] = SlotState::USED;
      ++m_numUsed;
    }
    return m_pairs[slot].second;
  }
  /// Drops a key and its value; whether it was here.
  template <class K> bool erase(const K& key)
  {
    const UInt64 slot = findSlot(key);
    if (slot == NO_SLOT) return false;
    m_states[slot] = SlotState::ERASED;
    --m_numUsed;
    std::destroy_at(m_pairs + slot);
    return true;
  }
  /// Drops all keys; the capacity stays.
  void clear()
  {
    for (UInt64 slot = 0; slot < m_capacity; ++slot) {
      const bool used = std::exchange(m_states[slot], SlotState::EMPTY) == SlotState::USED;
      if (used) std::destroy_at(m_pairs + slot);
    }
    m_numUsed = 0;
    m_maxProbeDistance = -1;
  }

private:
  using Pair = std::pair<Key, Value>;
  static constexpr UInt64 NO_SLOT = ~UInt64(0);
  static constexpr UInt64 MIN_CAPACITY = 4;
  static constexpr std::size_t ALIGNMENT = 16;
  static_assert(alignof(Pair) <= ALIGNMENT);

  UInt64 slotAt(UInt32 hash, Int32 distance) const { return (hash + static_cast<UInt32>(distance)) & m_mask; }

  template <class K> UInt64 findSlot(const K& key) const
  {
    if (m_numUsed == 0) return NO_SLOT;
    const UInt32 hash = Hash()(key);
    for (Int32 i = 0; i <= m_maxProbeDistance; ++i) {
      const UInt64 slot = slotAt(hash, i);
      if (m_states[slot] == SlotState::EMPTY) return NO_SLOT;
      if (m_states[slot] == SlotState::USED && m_pairs[slot].first == key) return slot;
    }
    return NO_SLOT;
  }

  /// Where the key is or goes. An erased slot within the distance is taken again; behind it, the first one
  /// that is not used.
  template <class K> UInt64 slotFor(const K& key)
  {
    const UInt32 hash = Hash()(key);
    UInt64 erased = NO_SLOT;
    for (Int32 i = 0; i <= m_maxProbeDistance; ++i) {
      const UInt64 slot = slotAt(hash, i);
      if (m_states[slot] == SlotState::EMPTY) return slot;
      if (m_states[slot] == SlotState::USED) {
        if (m_pairs[slot].first == key) return slot;
      } else if (erased == NO_SLOT) {
        erased = slot;
      }
    }
    return erased != NO_SLOT ? erased : firstFree(hash, m_maxProbeDistance + 1);
  }
  UInt64 firstFree(UInt32 hash, Int32 distance)
  {
    while (m_states[slotAt(hash, distance)] == SlotState::USED) ++distance;
    m_maxProbeDistance = std::max(m_maxProbeDistance, distance);
    return slotAt(hash, distance);
  }

  [[gnu::noinline]] void grow(UInt64 needed)
  {
    UInt64 capacity = MIN_CAPACITY;
    while (capacity < needed) capacity *= 2;
    auto* states = static_cast<SlotState*>(m_allocator.allocateBytes(capacity, ALIGNMENT));
    Pair* pairs = nullptr;
    try {
      pairs = static_cast<Pair*>(m_allocator.allocateBytes(capacity * sizeof(Pair), ALIGNMENT));
    } catch (...) {
      m_allocator.deallocateBytes(states, capacity);
      throw;
    }
    if (!states || !pairs) {
      deallocate(states, pairs, capacity);
      throw std::bad_alloc();
    }
    std::memset(states, 0, capacity);
    std::swap(m_states, states);
    std::swap(m_pairs, pairs);
    std::swap(m_capacity, capacity);
    m_numUsed = 0;
    m_maxProbeDistance = -1;
    m_mask = m_capacity - 1;
    for (UInt64 old = 0; old < capacity; ++old) {
      if (states[old] != SlotState::USED) continue;
      const UInt64 slot = firstFree(Hash()(pairs[old].first), 0);
      new (m_pairs + slot) Pair(std::move(pairs[old]));
      std::destroy_at(pairs + old);
      m_states[slot] = SlotState::USED;
      ++m_numUsed;
    }
    deallocate(states, pairs, capacity);
  }
  void deallocate(SlotState* states, Pair* pairs, UInt64 capacity)
  {
    m_allocator.deallocateBytes(states, capacity);
    m_allocator.deallocateBytes(pairs, capacity * sizeof(Pair));
  }

  Allocator m_allocator;
  SlotState* m_states = nullptr;
  Pair* m_pairs = nullptr;
  UInt64 m_capacity = 0;
  UInt64 m_numUsed = 0;
  Int32 m_maxProbeDistance = -1;
  UInt64 m_mask = 0;
};

template <class Key, class Value>
using HashTable = LinearProbingHashTableImplementation<Key, Value, HashFn<Key>, ByteAllocator>;

} // namespace kel
