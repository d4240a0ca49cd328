#pragma once
#include "kel/Types.h"
#include "kel/ref_ptr.h"
#include <cstdint>
#include <string>

namespace kel {

/// The 32-bit hash by which the engine's tables place their keys; the same in every run for equal texts.
template <class Key> struct HashFn;

template <class T> struct HashFn<T*>
{
  UInt32 operator()(const void* pointer) const
  {
    UInt64 h = reinterpret_cast<std::uintptr_t>(pointer) * 0x3ffff - 1;
    h ^= h >> 31;
    h *= 21;
    h ^= h >> 11;
    h *= 65;
    h ^= h >> 22;
    return static_cast<UInt32>(h);
  }
};

template <class T> struct HashFn<ref_ptr<T>>
{
  UInt32 operator()(const T* object) const { return HashFn<const T*>()(object); }
  UInt32 operator()(const ref_ptr<T>& object) const { return (*this)(object.get()); }
};

template <> struct HashFn<std::string>
{
  UInt32 operator()(const std::string& text) const
  {
    UInt32 h = 0;
    for (const char c : text) h = h * 37 + static_cast<UInt32>(static_cast<signed char>(c));
    return h;
  }
};

} // namespace kel
