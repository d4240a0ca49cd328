#pragma once
#include "kel/Types.h"

namespace kel {

/// A point in simulated time, in seconds.
using TimeStamp = Real;

} // namespace kel
