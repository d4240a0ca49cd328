#pragma once
#include <cstdint>

namespace kel {

/// Floating-point number of the engine, in every physical quantity.
using Real = double;
/// Floating-point numbers by their number of bits.
using Real32 = float;
using Real64 = double;

/// Signed integers; the plain one has 64 bits.
using Int = std::int64_t;
using Int8 = std::int8_t;
using Int16 = std::int16_t;
using Int32 = std::int32_t;
using Int64 = std::int64_t;

/// Unsigned integers; the plain one has 64 bits.
using UInt = std::uint64_t;
using UInt8 = std::uint8_t;
using UInt16 = std::uint16_t;
using UInt32 = std::uint32_t;
using UInt64 = std::uint64_t;

/// Row number in an entity storage.
using Index = std::uint32_t;

} // namespace kel
