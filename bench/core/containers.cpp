// Appending ten million elements one by one: the engine's vectors against the standard's in the same run.
#include "kel/Vec3.h"
#include "kel/Vector.h"
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace {

constexpr int COUNT = 10'000'000;
constexpr int PASSES = 9;

template <class V> double append()
{
  const auto begin = std::chrono::steady_clock::now();
  V v;
  for (int i = 0; i < COUNT; ++i) v.push_back(typename V::value_type(i));
  asm volatile("" : : "r"(&v[COUNT - 1]) : "memory"); // the elements count as read
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

double median(std::vector<double> values)
{
  std::nth_element(values.begin(), values.begin() + PASSES / 2, values.end());
  return values[PASSES / 2];
}

template <class Ours, class Standard> void compare(const char* name)
{
  std::vector<double> ours, standard;
  for (int pass = 0; pass < PASSES; ++pass) {
    ours.push_back(append<Ours>());
    standard.push_back(append<Standard>());
  }
  std::printf("%-20s %8.1f ms, std::vector %8.1f ms, ratio %.2f\n", name, median(ours), median(standard),
              median(ours) / median(standard));
}

} // namespace

int main()
{
  compare<kel::VectorPOD<kel::Real>, std::vector<kel::Real>>("VectorPOD<Real>");
  compare<kel::VectorPOD<kel::Vec3>, std::vector<kel::Vec3>>("VectorPOD<Vec3>");
  compare<kel::Vector<kel::Real>, std::vector<kel::Real>>("Vector<Real>");
}
