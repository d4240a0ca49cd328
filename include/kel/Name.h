#pragma once
#include "kel/String.h"
#include <cstddef>
#include <functional>

namespace kel {

/// Handle on a shared, immutable, counted string: copying a name copies a pointer.
class Name
{
public:
  /// The empty name; it owns nothing.
  Name();
  Name(const char* text);
  Name(const String& text);
  Name(const Name& other) noexcept;
  Name(Name&& other) noexcept : m_shared(other.m_shared) { other.m_shared = nullptr; }
  Name& operator=(Name other) noexcept;
  ~Name();

  /// The text; valid as long as some name shares it.
  const String& str() const noexcept;
  const char* c_str() const noexcept { return str().c_str(); }
  bool empty() const noexcept { return str().empty(); }

  friend bool operator==(const Name& a, const Name& b) noexcept
  {
    return a.m_shared == b.m_shared || a.str() == b.str();
  }
  friend bool operator<(const Name& a, const Name& b) noexcept { return a.str() < b.str(); }

private:
  struct SharedString;
  static SharedString* getSharedString(const String& text);
  static void destroySharedString(SharedString* shared) noexcept;

  SharedString* m_shared; // null for the empty text
};

} // namespace kel

template <> struct std::hash<kel::Name>
{
  std::size_t operator()(const kel::Name& name) const noexcept
  {
    return std::hash<kel::String>()(name.str());
  }
};
