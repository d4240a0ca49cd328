#pragma once
#include "kel/String.h"
#include <cstddef>
#include <cstdint>

namespace kel {

/// A universally unique identifier: 16 bytes as two 64-bit words.
class Uuid
{
public:
  /// The null identifier, all bytes zero.
  Uuid() = default;
  /// Reads the usual text form, in upper or lower case. Anything else gives the null identifier and a warning
  /// in the log.
  explicit Uuid(const String& text);

  /// The identifier of a name, the same for the same name everywhere: version 5, in the null name space.
  static Uuid generateFromString(const String& name);

  /// The usual text form, 36 characters in lower case.
  String str() const;
  /// Bytes of an identifier.
  static constexpr std::size_t size() { return 16; }
  /// The 16 bytes, a view.
  void* data() { return m_words; }
  const void* data() const { return m_words; }

  /// Compares both words.
  friend bool operator==(const Uuid&, const Uuid&) = default;
  /// Orders by the first word, then by the second, as unsigned numbers.
  friend auto operator<=>(const Uuid&, const Uuid&) = default;

private:
  std::uint64_t m_words[2] = {0, 0};
};

/// Makes identifiers that no other one ever equals, whichever generator or process made it: version 4.
class UuidGenerator
{
public:
  Uuid generate();
};

} // namespace kel
