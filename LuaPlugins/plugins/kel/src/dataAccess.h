#pragma once
#include <stdexcept>

/// How scripts reach elements that the engine does not test: what would read outside an object is an error of
/// the script, `std::out_of_range` here.
namespace data {

inline void require(bool inside)
{
  if (!inside) throw std::out_of_range("index of an element is out of range");
}

/// Of an array or a buffer.
template <class Elements> const auto& front(const Elements& elements)
{
  require(!elements.empty());
  return elements.front();
}
template <class Elements> const auto& back(const Elements& elements)
{
  require(!elements.empty());
  return elements.back();
}

} // namespace data
