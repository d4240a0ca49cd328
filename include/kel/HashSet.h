#pragma once
#include "kel/ByteAllocator.h"
#include "kel/HashFn.h"
#include "kel/HashTable.h"
#include "kel/Types.h"
#include "kel/nextPrime.h"
#include <algorithm>
#include <memory>
#include <utility>

namespace kel {

/// Set of keys in a table whose capacity is a prime, at most about four fifths full. A key lies at one of
/// eleven places: the squares of 0 to 10 behind the slot of its hash.
template <class Key, class Hash = HashFn<Key>, class Allocator = ByteAllocator> class HashSet
{
public:
  /// Where an insertion ended.
  struct Iterator
  {
    HashSet* table;
    UInt64 slot;
    bool wasPresent;

    const Key& operator*() const { return table->m_slots[slot].key; }
  };

  explicit HashSet(const Allocator& allocator = Allocator()) : m_allocator(allocator) {}
  HashSet(const HashSet&) = delete;
  HashSet& operator=(const HashSet&) = delete;
  ~HashSet() { deallocate(m_slots, m_capacity); }

  /// Number of keys.
  UInt64 size() const { return m_numUsed; }
  bool empty() const { return m_numUsed == 0; }
  /// Number of slots: 0, or a prime.
  UInt64 capacity() const { return m_capacity; }
  /// The highest number of the places, 0 to 10, that any key was ever put to since the table last grew.
  UInt16 maxProbeDistance() const { return m_maxProbeDistance; }

  bool contains(const Key& key) const { return findSlot(key) != NO_SLOT; }
  /// Adds a key, if it is not here. Throws `std::bad_alloc` without memory to grow.
  Iterator insert(const Key& key)
  {
    const auto threshold = static_cast<UInt64>(Real(static_cast<Real32>(m_capacity)) * 0.8);
    if (m_capacity == 0 || m_numUsed >= threshold) rebuild(2 * Real(static_cast<Real32>(m_capacity + 1)));
    return place(key);
  }
  /// Drops a key; whether it was here.
  bool erase(const Key& key)
  {
    const UInt64 slot = findSlot(key);
    if (slot == NO_SLOT) return false;
    m_slots[slot].key = Key();
    m_slots[slot].state = SlotState::ERASED;
    --m_numUsed;
    return true;
  }

private:
  struct Slot
  {
    Key key;
    SlotState state = SlotState::EMPTY;
  };
  static constexpr UInt64 NO_SLOT = ~UInt64(0);
  static constexpr UInt16 NUM_PROBES = 11;
  static constexpr std::size_t ALIGNMENT = 16;
  static_assert(alignof(Slot) <= ALIGNMENT);

  UInt64 slotAt(UInt32 hash, UInt64 probe) const { return (hash + probe * probe) % m_capacity; }

  UInt64 findSlot(const Key& key) const
  {
    if (m_numUsed == 0) return NO_SLOT;
    const UInt32 hash = Hash()(key);
    for (UInt64 i = 0; i <= m_maxProbeDistance; ++i) {
      const UInt64 slot = slotAt(hash, i);
      if (m_slots[slot].state == SlotState::EMPTY) return NO_SLOT;
      if (m_slots[slot].state == SlotState::USED && m_slots[slot].key == key) return slot;
    }
    return NO_SLOT;
  }

  Iterator place(const Key& key)
  {
    const UInt32 hash = Hash()(key);
    UInt64 erased = NO_SLOT;
    for (UInt16 i = 0; i < NUM_PROBES; ++i) {
      const UInt64 slot = slotAt(hash, i);
      const SlotState state = m_slots[slot].state;
      if (state == SlotState::EMPTY) return take(slot, i, key);
      if (state == SlotState::USED && m_slots[slot].key == key) return {this, slot, true};
      if (state == SlotState::ERASED && erased == NO_SLOT) erased = slot;
      if (erased != NO_SLOT && i >= m_maxProbeDistance) return take(erased, i, key);
    }
    rebuild(2 * Real(static_cast<Real32>(m_capacity)));
    return place(key);
  }
  Iterator take(UInt64 slot, UInt16 distance, const Key& key)
  {
    m_slots[slot].key = key;
    m_slots[slot].state = SlotState::USED;
    ++m_numUsed;
    m_maxProbeDistance = std::max(m_maxProbeDistance, distance);
    return {this, slot, false};
  }

  [[gnu::noinline]] void rebuild(Real wanted)
  {
    const auto least = static_cast<UInt32>(wanted);
    UInt64 capacity = static_cast<UInt64>(nextPrime(static_cast<int>(std::max(least, UInt32(1)))));
    Slot* slots = static_cast<Slot*>(m_allocator.allocateBytes(capacity * sizeof(Slot), ALIGNMENT));
    std::uninitialized_default_construct_n(slots, capacity);
    std::swap(m_slots, slots);
    std::swap(m_capacity, capacity);
    m_numUsed = 0;
    m_maxProbeDistance = 0;
    for (UInt64 old = 0; old < capacity; ++old)
      if (slots[old].state == SlotState::USED) place(slots[old].key);
    deallocate(slots, capacity);
  }
  void deallocate(Slot* slots, UInt64 capacity)
  {
    std::destroy_n(slots, capacity);
    m_allocator.deallocateBytes(slots, capacity * sizeof(Slot));
  }

  UInt64 m_numUsed = 0;
  UInt64 m_capacity = 0;
  Slot* m_slots = nullptr;
  UInt16 m_maxProbeDistance = 0;
  Allocator m_allocator;
};

} // namespace kel
