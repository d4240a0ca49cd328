#pragma once
#include <string>

namespace kel {

/// The engine's text: bytes in UTF-8, owned by value.
using String = std::string;

} // namespace kel
