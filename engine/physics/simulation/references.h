#pragma once
#include "kel/Name.h"
#include "kel/Uuid.h"
#include "kel/ref_ptr.h"
#include <algorithm>
#include <vector>

namespace kel {

/// Adds an object that is not null and not there yet; false otherwise.
template <class T> bool addReference(std::vector<ref_ptr<T>>& list, T* object)
{
  const ref_ptr<T> keep(object);
  if (!object || std::find(list.begin(), list.end(), object) != list.end()) return false;
  list.push_back(keep);
  return true;
}

/// Removes an object; false if it is not there. It dies after it has left the list.
template <class T> bool removeReference(std::vector<ref_ptr<T>>& list, T* object)
{
  const auto found = std::find(list.begin(), list.end(), object);
  if (!object || found == list.end()) return false;
  const ref_ptr<T> keep(object);
  list.erase(found);
  return true;
}

/// The first object of a name, null if there is none.
template <class T> T* findByName(const std::vector<ref_ptr<T>>& list, const Name& name)
{
  const auto found = std::find_if(list.begin(), list.end(),
                                  [&](const ref_ptr<T>& object) { return object->getName() == name.str(); });
  return found == list.end() ? nullptr : found->get();
}

/// The object of an identifier, null if there is none.
template <class T> T* findByUuid(const std::vector<ref_ptr<T>>& list, const Uuid& uuid)
{
  const auto found = std::find_if(list.begin(), list.end(),
                                  [&](const ref_ptr<T>& object) { return object->getUuid() == uuid; });
  return found == list.end() ? nullptr : found->get();
}

} // namespace kel
