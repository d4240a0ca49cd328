#pragma once
#include "kel/Types.h"
#include <cstddef>
#include <vector>

namespace kelData {

/// Gives instances ids that stay when their rows move. An id is the number of a slot and how often that was
/// used before, so that none comes twice before four thousand million others; a slot that has been used 256
/// times stays empty.
class InstanceTable
{
public:
  /// Ids in use at a time are below this number.
  static constexpr kel::UInt32 MAX_SLOTS = (kel::UInt32(1) << 24) - 1;

  /// Whether there are that many more ids.
  bool hasRoom(std::size_t count) const { return count <= m_numFree + (MAX_SLOTS - m_slots.size()); }
  /// A new id for a row, of those that there are.
  kel::UInt32 add(kel::Index row)
  {
    if (m_free == NONE) {
      const auto id = static_cast<kel::UInt32>(m_slots.size());
      m_slots.push_back({row, id});
      return id;
    }
    Slot& slot = m_slots[m_free];
    m_free = slot.row;
    --m_numFree;
    slot.row = row;
    return slot.id;
  }
  /// Ends an id that is in use.
  void remove(kel::UInt32 id)
  {
    Slot& slot = m_slots[slotOf(id)];
    slot.id += MAX_SLOTS + 1;
    if (slot.id <= MAX_SLOTS) return; // the last use
    slot.row = m_free;
    m_free = slotOf(id);
    ++m_numFree;
  }
  /// The instance of an id that is in use has another row from now on.
  void move(kel::UInt32 id, kel::Index row) { m_slots[slotOf(id)].row = row; }
  /// The row of an id that is in use; any number for another one.
  kel::Index find(kel::UInt32 id) const
  {
    return slotOf(id) < m_slots.size() ? m_slots[slotOf(id)].row : NONE;
  }
  /// Whether no id was ever given.
  bool empty() const { return m_slots.empty(); }

private:
  static constexpr kel::UInt32 NONE = 0xFFFFFFFF;
  struct Slot
  {
    kel::Index row; // the next free slot while this one is
    kel::UInt32 id; // that of its use now, or next
  };
  static kel::UInt32 slotOf(kel::UInt32 id) { return id & MAX_SLOTS; }

  std::vector<Slot> m_slots;
  kel::UInt32 m_free = NONE;
  std::size_t m_numFree = 0;
};

} // namespace kelData
