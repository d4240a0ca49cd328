#pragma once
#include "containerAccess.h"

/// How scripts reach the elements of arrays and buffers, as those of containers.
namespace data {

template <class Elements> const auto& front(const Elements& elements)
{
  containers::require(!elements.empty());
  return elements.front();
}
template <class Elements> const auto& back(const Elements& elements)
{
  containers::require(!elements.empty());
  return elements.back();
}

} // namespace data
