#include "kel/Vector.h"
#include "Counted.h"
#include "kel/Matrix3x3.h"
#include "kel/Uuid.h"
#include "kelData/EntityPtr.h"
#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace {

using Bytes = kel::VectorPOD<signed char>;
using Longs = kel::VectorPOD<long>;

template <class V> void fill(V& v, std::size_t count)
{
  for (std::size_t i = 0; i < count; ++i) v.push_back({});
}

} // namespace

TEST(Vector, PushDoubles)
{
  Longs v;
  EXPECT_EQ(v.capacity(), 0U);
  EXPECT_EQ(v.ptr(), nullptr);
  std::vector<std::size_t> capacities;
  for (long i = 0; i < 1025; ++i) {
    v.push_back(i);
    if (capacities.empty() || capacities.back() != v.capacity()) capacities.push_back(v.capacity());
  }
  EXPECT_EQ(capacities, (std::vector<std::size_t>{4, 8, 16, 32, 64, 128, 256, 512, 1024, 2048}));
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(v.ptr()) % 16, 0U);
  EXPECT_EQ(v.front(), 0);
  EXPECT_EQ(v.back(), 1024);
  v.push_back(v.front()); // its own element, also where it grows
  kel::VectorPOD<long> full(4);
  full.push_back(full.front());
  EXPECT_EQ(full.capacity(), 8U);
}

TEST(Vector, ReserveAndResizeAreExact)
{
  Longs v(3);
  EXPECT_EQ(v.capacity(), 4U);
  EXPECT_EQ(Longs(0).capacity(), 0U);
  EXPECT_EQ(Longs(9).capacity(), 9U);
  v.reserve(1);
  EXPECT_EQ(v.capacity(), 4U);
  v.reserve(7);
  EXPECT_EQ(v.capacity(), 7U);
  fill(v, 5); // 3 + 5: once beyond 7, where it doubles
  EXPECT_EQ(v.capacity(), 14U);
  v.resize(20);
  EXPECT_EQ(v.capacity(), 20U);
  v.resize(5); // a quarter: stays
  EXPECT_EQ(v.capacity(), 20U);
  v.resize(4);
  EXPECT_EQ(v.capacity(), 4U);
  v.resize(0);
  EXPECT_EQ(v.capacity(), 4U);
}

TEST(Vector, ShrinksBelowAQuarter)
{
  for (const auto& [size, capacity] : {std::pair{2U, 4U}, {31U, 31U}, {32U, 128U}}) {
    Longs v;
    fill(v, 100);
    ASSERT_EQ(v.capacity(), 128U);
    v.resize(size);
    EXPECT_EQ(v.size(), size);
    EXPECT_EQ(v.capacity(), capacity);
  }
}

// Twice the size is taken in single precision: 2^24 + 1 is no float and becomes 2^24, 2^24 + 3 becomes 2^24
// + 4.
TEST(Vector, GrowsInSinglePrecision)
{
  constexpr std::size_t limit = std::size_t(1) << 24;
  for (const auto& [size, capacity] : {std::pair{limit, 2 * limit},
                                       {limit + 1, 2 * limit},
                                       {limit + 2, 2 * limit + 4},
                                       {limit + 3, 2 * limit + 8}}) {
    Bytes v(size);
    ASSERT_EQ(v.capacity(), size);
    v.push_back(7);
    EXPECT_EQ(v.capacity(), capacity);
    EXPECT_EQ(v.size(), size + 1);
    EXPECT_EQ(v.back(), 7);
    EXPECT_EQ(v[size - 1], 0);
  }
}

// a = max(s, a) * 0.8 + s * 0.2 after each clear of s elements, by hand: 1000, 800.2, ..., 262.88, 210.5.
template <class V> void clearsSlowly(V v)
{
  fill(v, 1000);
  ASSERT_EQ(v.capacity(), 1024U);
  v.clear();
  for (int i = 0; i < 7; ++i) {
    EXPECT_EQ(v.capacity(), 1024U);
    v.clear(); // empty: nothing decays
    v.push_back({});
    v.clear();
  }
  EXPECT_EQ(v.capacity(), 210U);
}

TEST(Vector, ClearShrinksAfterAWhile)
{
  clearsSlowly(Longs());
  clearsSlowly(kel::Vector<std::string>());
}

// The last sum in double and rounded once, against every step in single precision: these two sizes differ.
TEST(Vector, SmoothingHasItsPrecision)
{
  std::mt19937 random(7);
  int different = 0;
  for (int i = 0; i < 200; ++i) {
    Longs pod;
    kel::Vector<long> object;
    float a = 0, b = 0;
    for (int k = 0; k < 4; ++k) {
      const std::size_t size = 1 + random() % 3000;
      pod.resize(size);
      object.resize(size);
      pod.clear();
      object.clear();
      const float s = static_cast<float>(size);
      const float larger = std::max(s, a) * 0.8F;
      a = static_cast<float>(double(larger) + double(s) * 0.19999998807907104);
      const float first = std::max(s, b) * 0.8F;
      const float second = s * 0.19999999F;
      b = first + second;
      ASSERT_EQ(pod.smoothedSize(), a);
      ASSERT_EQ(object.smoothedSize(), b);
    }
    different += a != b;
  }
  EXPECT_GT(different, 0);
}

TEST(Vector, NewElementsAreDefaultOnes)
{
  kel::VectorPOD<kel::Matrix3x3> matrices(1);
  EXPECT_TRUE(matrices.at(0) == kel::Matrix3x3());
  EXPECT_EQ(matrices.at(0)(1, 1), 1);
  const kel::VectorPOD<kel::Quat32> quaternions(5);
  EXPECT_EQ(quaternions.at(4).w(), 1);
  EXPECT_EQ(quaternions.at(4).x(), 0);
  EXPECT_EQ(kel::VectorPOD<kelData::EntityPtr>(1).at(0), kelData::EntityPtr());
  EXPECT_EQ(kel::VectorPOD<kel::Uuid>(1).at(0), kel::Uuid());
  EXPECT_EQ(kel::Vector<std::string>(2).at(1), "");
  EXPECT_EQ(kel::VectorPOD<long*>(2).at(1), nullptr);
}

TEST(Vector, EraseAndPopDoNotTest)
{
  Longs v;
  for (long i = 0; i < 6; ++i) v.push_back(i);
  v.erase(1);
  v.erase(2, 4); // of 0 2 3 4 5
  EXPECT_EQ(std::vector<long>(v.begin(), v.end()), (std::vector<long>{0, 2, 5}));
  v.erase(2, 1); // the bounds the wrong way round: the tail moves up
  EXPECT_EQ(std::vector<long>(v.begin(), v.end()), (std::vector<long>{0, 2, 2, 2}));
  v.pop_back();
  EXPECT_EQ(v.back(), 2);
  EXPECT_EQ(v.capacity(), 8U);
  Longs empty;
  empty.pop_back();
  EXPECT_EQ(empty.size(), ~std::uint64_t(0));
  Longs other;
  other.erase(0);
  EXPECT_EQ(other.size(), ~std::uint64_t(0));
}

// Every operation against the standard's vector, and the invariants after each.
template <class V, class Make> void matchesModel(Make make)
{
  using T = typename V::value_type;
  std::mt19937 random(1);
  V v;
  std::vector<T> model;
  for (int i = 0; i < 100000; ++i) {
    const std::size_t n = random() % (random() % 40 == 0 ? 3000 : 60);
    switch (random() % 16) {
    case 0:
      v.resize(n), model.resize(n);
      break;
    case 1:
      v.reserve(n);
      break;
    case 2:
      v.clear(), model.clear();
      break;
    case 3: {
      V copy(v);
      v = std::move(copy);
      break;
    }
    default: {
      const T element = make(random());
      v.push_back(element), model.push_back(element);
    }
    }
    ASSERT_EQ(v.size(), model.size());
    ASSERT_LE(v.size(), v.capacity());
    ASSERT_TRUE(v.capacity() == 0 ? v.ptr() == nullptr : v.capacity() >= 4);
    if (random() % 16 == 0) {
      ASSERT_TRUE(std::equal(v.begin(), v.end(), model.begin(), model.end()));
    }
    if (!model.empty()) {
      ASSERT_TRUE(v.at(n % model.size()) == model[n % model.size()] && v.back() == model.back());
    }
  }
}

TEST(Vector, MatchesTheStandardOne)
{
  matchesModel<Longs>([](auto n) { return static_cast<long>(n); });
  matchesModel<kel::Vector<std::string>>([](auto n) { return std::string(n % 40, 'x') + std::to_string(n); });
  std::vector<Ref> objects(50);
  for (Ref& object : objects) object = new Counted;
  matchesModel<kel::Vector<Ref>>([&](auto n) { return objects[n % 50]; });
  for (const Ref& object : objects) ASSERT_EQ(object->getReferenceCount(), 1U);
  objects.clear();
  EXPECT_EQ(Counted::s_alive, 0);
}
