#pragma once
#include "kel/ref_ptr.h"
#include "kelData/EntityStorage.h"

namespace kel {

/// The rows of all objects of a class, by pointers to the columns of their storage that T declares. There is
/// one T a process, which is never destroyed: objects may outlive any static object.
template <class T> struct Rows
{
  ref_ptr<kelData::EntityStorage> storage;

  static const T& instance()
  {
    static const auto* rows = new T;
    return *rows;
  }
};

} // namespace kel
