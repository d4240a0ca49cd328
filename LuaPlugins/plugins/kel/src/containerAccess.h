#pragma once
#include "kel/Referenced.h"
#include "kel/Types.h"
#include "kel/ref_ptr.h"
#include <stdexcept>

/// How scripts reach the elements of containers that do not test their indices: what would read or write
/// outside the buffer is an error of the script, `std::out_of_range` here.
namespace containers {

inline void require(bool inside)
{
  if (!inside) throw std::out_of_range("index of an element is out of range");
}

/// Whether the elements lie in the buffer; not where the size of an empty container wrapped.
template <class Container> bool isWhole(const Container& container)
{
  return container.size() <= container.capacity();
}

/// The element of an index; one that is not below the size ends the process.
template <class Container> const auto& at(const Container& container, kel::UInt64 index)
{
  require(index >= container.size() || index < container.capacity());
  return container.at(index);
}
template <class Container> const auto& front(const Container& container)
{
  require(!container.empty() && container.capacity() != 0);
  return container.front();
}
template <class Container> const auto& back(const Container& container)
{
  require(!container.empty() && isWhole(container));
  return container.back();
}

template <class Container, class T> void append(Container& container, T* object)
{
  require(isWhole(container));
  container.push_back(object);
}
template <class Container> void reserve(Container& container, kel::UInt64 size)
{
  require(isWhole(container) || size <= container.capacity());
  container.reserve(size);
}
template <class Container> void resize(Container& container, kel::UInt64 size)
{
  require(isWhole(container) || size <= container.capacity());
  container.resize(size);
}
template <class Container> void erase(Container& container, kel::UInt64 begin, kel::UInt64 end)
{
  const kel::UInt64 size = container.size();
  require(end >= size || (isWhole(container) && size + begin - end <= container.capacity()));
  container.erase(begin, end);
}

/// The object of an element. One that a container does not keep alive must have been shown to a script, by
/// which its death is known.
template <class T> T* object(T* element)
{
  if (element && !dynamic_cast<const T*>(kel::Referenced::findShown(element)))
    throw std::out_of_range("the object of this element is gone");
  return element;
}
template <class T> T* object(const kel::ref_ptr<T>& element) { return element.get(); }

} // namespace containers
