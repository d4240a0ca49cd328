#pragma once
#include "kel/String.h"
#include <cstdint>

namespace kel {

/// A universally unique identifier: 16 bytes as two 64-bit words.
class Uuid
{
public:
  /// The null identifier, all bytes zero.
  Uuid() = default;

  /// A new random identifier.
  static Uuid generate();

  /// The usual text form, 36 characters in lower case.
  String str() const;

  /// Compares both words.
  friend bool operator==(const Uuid&, const Uuid&) = default;
  /// Orders by the first word, then by the second, as unsigned numbers.
  friend auto operator<=>(const Uuid&, const Uuid&) = default;

private:
  std::uint64_t m_words[2] = {0, 0};
};

} // namespace kel
