#pragma once

namespace kel {

/// The smallest prime that is not below a number; 2 for a negative one.
int nextPrime(int number);

} // namespace kel
