#pragma once
#include <cstddef>

namespace kelData {

class Format;

/// Where elements lie and what they are; it owns nothing.
struct Data
{
  Format* format = nullptr;
  void* elements = nullptr;
  std::size_t size = 0; ///< number of elements
};

} // namespace kelData
