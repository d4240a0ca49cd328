#pragma once
#include "kel/Types.h"
#include <cstring>
#include <type_traits>

namespace kel {

/// A number that tells apart what was added, but for a chance of 2^-64.
class Digest
{
public:
  /// Adds the bits of a value, which must all mean something.
  template <class T> Digest& add(const T& value)
  {
    static_assert(std::is_trivially_copyable_v<T>);
    return addBytes(&value, sizeof value);
  }
  Digest& addBytes(const void* bytes, std::size_t size)
  {
    const auto* from = static_cast<const char*>(bytes);
    for (; size >= sizeof(UInt64); size -= sizeof(UInt64), from += sizeof(UInt64))
      addWord(from, sizeof(UInt64));
    if (size > 0) addWord(from, size);
    return *this;
  }
  UInt64 get() const { return m_sum; }

private:
  void addWord(const char* from, std::size_t size)
  {
    UInt64 word = 0;
    std::memcpy(&word, from, size);
    m_sum = (m_sum ^ word) * 0x9E3779B97F4A7C15;
    m_sum ^= m_sum >> 32;
  }

  UInt64 m_sum = 0x243F6A8885A308D3;
};

} // namespace kel
