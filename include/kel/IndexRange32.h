#pragma once
#include "kel/Types.h"

namespace kel {

/// The indexes from `begin` up to `end`, without the latter.
struct IndexRange32
{
  UInt32 begin = 0;
  UInt32 end = 0;

  /// The number of indexes; wraps if the end lies before the beginning.
  UInt32 size() const { return end - begin; }
  bool empty() const { return begin == end; }

  friend bool operator==(const IndexRange32&, const IndexRange32&) = default;
};

using IndexRange = IndexRange32;

} // namespace kel
