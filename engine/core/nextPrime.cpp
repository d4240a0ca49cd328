#include "kel/nextPrime.h"

namespace kel {

namespace {

bool isPrime(int number)
{
  for (int divisor = 2; divisor <= number / divisor; ++divisor)
    if (number % divisor == 0) return false;
  return number >= 2;
}

} // namespace

int nextPrime(int number)
{
  int candidate = number < 2 ? 2 : number;
  while (!isPrime(candidate)) ++candidate;
  return candidate;
}

} // namespace kel
