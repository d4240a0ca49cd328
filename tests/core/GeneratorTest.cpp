#include "LogCapture.h"
#include "kel/Random.h"
#include "kel/Uuid.h"
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <set>

using namespace kel;

namespace {

constexpr Int SMALLEST = std::numeric_limits<Int>::min(), LARGEST = std::numeric_limits<Int>::max();

template <class Generator> auto numbers(Generator generator, int count)
{
  std::vector<decltype(generator.rand())> result;
  for (int i = 0; i < count; ++i) result.push_back(generator.rand());
  return result;
}

TEST(RandomGenerator, SeedAndBoundsMakeTheNumbers)
{
  EXPECT_EQ(numbers(UniformRealGenerator(7, -1, 1), 100), numbers(UniformRealGenerator(7, -1, 1), 100));
  EXPECT_NE(numbers(UniformRealGenerator(7, -1, 1), 100), numbers(UniformRealGenerator(8, -1, 1), 100));
  EXPECT_EQ(numbers(UniformIntGenerator(1, 6), 100), numbers(UniformIntGenerator(5489, 1, 6), 100));
  EXPECT_EQ(numbers(UniformIntGenerator(6, 1), 100), numbers(UniformIntGenerator(1, 6), 100));
  // The first output of the twister for its standard seed is known.
  EXPECT_EQ(UniformIntGenerator(SMALLEST, LARGEST).rand() >> 32, Int(3499211612U) + (SMALLEST >> 32));
}

TEST(RandomGenerator, StaysInItsBoundsAndReachesThem)
{
  for (const double bound : {1e-320, 0.1, 1.0, 1e308, std::numeric_limits<double>::max()})
    for (const double number : numbers(UniformRealGenerator(3, -bound, bound), 1000))
      EXPECT_TRUE(number >= -bound && number <= bound);
  for (const double number : numbers(UniformRealGenerator(3, 0.1, 0.1), 100)) EXPECT_EQ(number, 0.1);
  const auto rolls = numbers(UniformIntGenerator(9, 1, 6), 200);
  EXPECT_EQ(std::set<Int>(rolls.begin(), rolls.end()), (std::set<Int>{1, 2, 3, 4, 5, 6}));
  for (const Int number : numbers(UniformIntGenerator(9, LARGEST - 1, LARGEST), 100))
    EXPECT_GE(number, LARGEST - 1);
  EXPECT_EQ(UniformIntGenerator(4, 4).rand(), 4);
}

TEST(RandomGenerator, IsUniform)
{
  double sum = 0, squares = 0;
  for (const double number : numbers(UniformRealGenerator(), 100000)) {
    sum += number;
    squares += number * number;
  }
  EXPECT_NEAR(sum / 100000, 0.5, 0.005);
  EXPECT_NEAR(squares / 100000, 1.0 / 3, 0.005);
  // Three quarters of all numbers: a plain remainder would give the first third twice as often.
  const Int third = LARGEST / 2;
  int below = 0;
  for (const Int number : numbers(UniformIntGenerator(1, SMALLEST, SMALLEST + 2 * third + third), 30000))
    if (number < SMALLEST + third) ++below;
  EXPECT_NEAR(below, 10000, 400);
}

TEST(RandomGenerator, TakesBoundsThatAreNoNumbers)
{
  const double nan = std::nan("");
  EXPECT_TRUE(std::isnan(UniformRealGenerator(nan, nan).rand()));
  UniformRealGenerator(0, std::numeric_limits<double>::infinity()).rand();
}

TEST(Uuid, IsReadAsItIsWritten)
{
  const String text = "01234567-89ab-cdef-0123-456789abcdef";
  EXPECT_EQ(Uuid(text).str(), text);
  EXPECT_EQ(Uuid("01234567-89AB-CDEF-0123-456789ABCDEF"), Uuid(text));
  EXPECT_EQ(*static_cast<const unsigned char*>(Uuid(text).data()), 0x01);
  EXPECT_EQ(Uuid().str(), "00000000-0000-0000-0000-000000000000");
}

TEST(Uuid, WarnsOfWhatIsNoIdentifier)
{
  for (const char* text :
       {"", "x", "01234567-89ab-cdef-0123-456789abcde", "01234567-89ab-cdef-0123-456789abcdefa",
        "0123456789abcdef0123456789abcdef0123", "01234567-89ab-cdef-0123-456789abcdeg"}) {
    const LogCapture capture(Notify::NOTIFY_WARNING);
    EXPECT_EQ(Uuid(text), Uuid());
    EXPECT_EQ(capture.lines,
              std::vector<String>{"warning: Uuid: '" + String(text) + "' is no identifier.\n"});
  }
}

TEST(Uuid, NamesAlwaysGiveTheSame)
{
  EXPECT_EQ(Uuid::generateFromString("kel").str(), "c0566194-9bac-557c-8bc6-0ae7f7b7c165");
  EXPECT_NE(Uuid::generateFromString("kel"), Uuid::generateFromString("Kel"));
  EXPECT_NE(Uuid::generateFromString(""), Uuid());
}

TEST(Uuid, GeneratedOnesDiffer)
{
  std::set<Uuid> ids;
  for (int i = 0; i < 1000; ++i) ids.insert(UuidGenerator().generate());
  EXPECT_EQ(ids.size(), 1000U);
  for (const Uuid& id : ids) EXPECT_EQ(id.str()[14], '4');
}

TEST(Uuid, IsOrderedByItsWords)
{
  const std::uint64_t words[][2] = {{0, 5}, {1, 0}, {1, 1}, {1ULL << 63, 0}, {~0ULL, ~0ULL}};
  Uuid last;
  for (const auto& pair : words) {
    Uuid id;
    std::memcpy(id.data(), pair, 16);
    EXPECT_TRUE(last < id);
    EXPECT_FALSE(id < last || id < id);
    last = id;
  }
}

} // namespace
