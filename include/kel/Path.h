#pragma once
#include "kel/String.h"
#include <cstddef>
#include <vector>

namespace kel {

/// The way to an object in a tree of named objects: names from the outermost to the innermost, written
/// "a.b.c".
class Path
{
public:
  /// The empty path, which names the object where the search starts.
  Path() = default;
  /// Splits the text at its dots; empty names are dropped.
  Path(const String& text);

  /// The names joined by dots.
  String str() const;
  /// The number of names.
  std::size_t size() const noexcept { return m_names.size(); }
  bool empty() const noexcept { return m_names.empty(); }
  /// The name at a place, outermost first; throws `std::out_of_range` for a bad index.
  const String& at(std::size_t index) const { return m_names.at(index); }
  /// Appends an innermost name.
  void append(const String& name) { m_names.push_back(name); }

  friend bool operator==(const Path&, const Path&) = default;

private:
  std::vector<String> m_names;
};

} // namespace kel
