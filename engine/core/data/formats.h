#pragma once
#include "kel/ref_ptr.h"
#include "kelData/Type.h"
#include <vector>

namespace kelData {

class Value;

/// The format that every type has: a `std::string`.
inline constexpr const char* ASCII = "ascii";

/// The first scalar of a value; NaN if it is no number.
double scalarOf(const Value& value);

/// The types of the engine with all their formats.
std::vector<kel::ref_ptr<Type>> createTypes();

} // namespace kelData
