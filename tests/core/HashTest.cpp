#include "Counted.h"
#include "kel/HashSet.h"
#include "kel/HashTable.h"
#include "kel/SetVector.h"
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace {

/// A key that counts how often it is compared; `spread` sets how many hashes there are.
struct Key
{
  unsigned id = 0;
  inline static int s_comparisons = 0;
  inline static unsigned s_spread = ~0U;
  bool operator==(const Key& other) const { return ++s_comparisons, id == other.id; }
};

/// Fails its nth allocation by a null.
struct Failing : kel::ByteAllocator
{
  inline static int s_left = -1;
  inline static int s_alive = 0;
  void* allocateBytes(std::size_t size, std::size_t alignment) const
  {
    if (s_left-- == 0) return nullptr;
    ++s_alive;
    return kel::ByteAllocator::allocateBytes(size, alignment);
  }
  void deallocateBytes(void* memory, std::size_t size) const noexcept
  {
    if (memory) --s_alive;
    kel::ByteAllocator::deallocateBytes(memory, size);
  }
};

std::size_t neededSlots(std::size_t used) { return used + ((used + 1) >> 1) + 2; }

} // namespace

template <> struct kel::HashFn<Key>
{
  UInt32 operator()(const Key& key) const { return key.id % Key::s_spread * 2654435761U; }
};

TEST(Hash, OfTexts)
{
  const kel::HashFn<std::string> hash;
  EXPECT_EQ(hash(""), 0U);
  EXPECT_EQ(hash("a"), 97U);
  EXPECT_EQ(hash("ab"), 97U * 37 + 98);
  EXPECT_EQ(hash("\xff"), 0xFFFFFFFFU); // bytes are signed
  EXPECT_EQ(hash("Matrix"), 1232346829U);
}

TEST(Hash, OfAddresses)
{
  const auto hash = [](std::uintptr_t a) { return kel::HashFn<int*>()(reinterpret_cast<int*>(a)); };
  EXPECT_EQ(hash(0), 720020139U);
  EXPECT_EQ(hash(0x1000), 363334632U);
  EXPECT_EQ(hash(0x7f1234567890), 3928068646U);
  auto* object = reinterpret_cast<Counted*>(0x1000);
  EXPECT_EQ(kel::HashFn<Ref>()(object), 363334632U);
}

TEST(HashTable, GrowsByPowersOfTwo)
{
  kel::HashTable<std::string, long> table;
  EXPECT_EQ(table.capacity(), 0U);
  EXPECT_EQ(table.maxProbeDistance(), -1);
  EXPECT_EQ(table.find("x"), nullptr);
  // used + (used + 1) / 2 + 2 slots are wanted before each insertion: 2 4 | 5 7 8 | 10 11 13 14 16 | 17
  for (const auto expected : {4U, 4U, 8U, 8U, 8U, 16U, 16U, 16U, 16U, 16U, 32U}) {
    table[std::to_string(table.size())] = 1;
    EXPECT_EQ(table.capacity(), expected) << table.size();
  }
  table.clear();
  EXPECT_EQ(table.capacity(), 32U);
  EXPECT_EQ(table.maxProbeDistance(), -1);
  EXPECT_EQ(table["new"], 0);
}

TEST(HashTable, PassesOverErasedSlotsAndTakesThemAgain)
{
  Key::s_spread = 1; // all keys want one slot
  kel::HashTable<Key, int> table;
  for (unsigned i = 0; i < 5; ++i) table[Key{i}] = static_cast<int>(i);
  EXPECT_EQ(table.maxProbeDistance(), 4);
  EXPECT_TRUE(table.erase(Key{1}));
  EXPECT_FALSE(table.erase(Key{1}));
  EXPECT_EQ(*table.find(Key{4}), 4);
  table[Key{9}] = 9;
  EXPECT_EQ(table.maxProbeDistance(), 4);
  EXPECT_EQ(table.capacity(), 8U);
  Key::s_spread = ~0U;
}

TEST(HashTable, GrowthWithoutMemoryChangesNothing)
{
  for (const int failing : {0, 1}) {
    kel::LinearProbingHashTableImplementation<Key, int, kel::HashFn<Key>, Failing> table;
    table[Key{1}] = 1;
    table[Key{2}] = 2;
    Failing::s_left = failing;
    EXPECT_THROW(table[Key{3}], std::bad_alloc);
    EXPECT_EQ(table.size(), 2U);
    EXPECT_EQ(*table.find(Key{2}), 2);
    EXPECT_EQ(Failing::s_alive, 2);
  }
  EXPECT_EQ(Failing::s_alive, 0);
}

// Few hashes make long probes, many make short ones.
class HashModel : public testing::TestWithParam<unsigned>
{
protected:
  void SetUp() override { Key::s_spread = GetParam(); }
  void TearDown() override { Key::s_spread = ~0U; }
  std::mt19937 m_random{GetParam()};
  std::size_t numKeys() const { return GetParam() < 50 ? 80 : 1500; }
};
INSTANTIATE_TEST_SUITE_P(Spreads, HashModel, testing::Values(3U, 40U, 400U, ~0U),
                         testing::PrintToStringParamName());

TEST_P(HashModel, TableMatchesTheStandardMap)
{
  kel::HashTable<Key, int> table;
  std::map<unsigned, int> model;
  for (int i = 0; i < 100000; ++i) {
    const Key key{static_cast<unsigned>(m_random() % numKeys())};
    const std::size_t capacity = table.capacity();
    const unsigned kind = m_random() % 1000;
    if (kind < 400) {
      table[key] = i, model[key.id] = i;
      ASSERT_LE(neededSlots(table.size() - 1), table.capacity());
    } else if (kind < 600) {
      ASSERT_EQ(table.erase(key), model.erase(key.id) == 1);
      ASSERT_EQ(table.capacity(), capacity);
    } else if (kind == 999) {
      table.clear(), model.clear();
      ASSERT_EQ(table.capacity(), capacity);
    }
    Key::s_comparisons = 0;
    const int* value = table.find(key);
    ASSERT_LE(Key::s_comparisons, table.maxProbeDistance() + 1);
    const auto found = model.find(key.id);
    ASSERT_EQ(value != nullptr, found != model.end());
    if (value) {
      ASSERT_EQ(*value, found->second);
    }
    ASSERT_EQ(table.size(), model.size());
  }
}

TEST_P(HashModel, SetVectorMatchesStandardOnes)
{
  kel::SetVector<Key> set;
  std::vector<unsigned> order;
  std::set<unsigned> model;
  for (int i = 0; i < 100000; ++i) {
    const Key key{static_cast<unsigned>(m_random() % numKeys())};
    if (m_random() % 2000 == 0) {
      const std::size_t capacity = set.tableCapacity();
      set.clear(), order.clear(), model.clear();
      ASSERT_EQ(set.tableCapacity(), capacity);
    } else if (m_random() % 4 == 0) {
      ASSERT_EQ(*set.push_back(key), key);
      if (model.insert(key.id).second) order.push_back(key.id);
    }
    ASSERT_EQ(set.size(), order.size());
    ASSERT_EQ(set.contains(key), model.count(key.id) == 1);
    const auto* place = set.find(key);
    if (place != set.end()) {
      ASSERT_EQ(order[static_cast<std::size_t>(place - set.begin())], key.id);
    }
    if (!order.empty()) {
      ASSERT_EQ(set.at(i % order.size()).id, order[i % order.size()]);
    }
  }
}

// Eleven places are all that one hash has.
class HashSetModel : public HashModel
{};
INSTANTIATE_TEST_SUITE_P(Spreads, HashSetModel, testing::Values(400U, ~0U),
                         testing::PrintToStringParamName());

TEST_P(HashSetModel, MatchesTheStandardSet)
{
  kel::HashSet<Key> set;
  std::set<unsigned> model;
  for (int i = 0; i < 100000; ++i) {
    const Key key{static_cast<unsigned>(m_random() % numKeys())};
    const unsigned kind = m_random() % 3;
    if (kind == 0) {
      const auto result = set.insert(key);
      ASSERT_EQ(result.wasPresent, !model.insert(key.id).second);
      ASSERT_EQ((*result).id, key.id);
    } else if (kind == 1) {
      ASSERT_EQ(set.erase(key), model.erase(key.id) == 1);
    }
    Key::s_comparisons = 0;
    ASSERT_EQ(set.contains(key), model.count(key.id) == 1);
    ASSERT_LE(Key::s_comparisons, set.maxProbeDistance() + 1);
    ASSERT_LE(set.maxProbeDistance(), 10);
    ASSERT_LE(set.size(), std::max<std::size_t>(1, set.capacity() * 4 / 5));
    ASSERT_EQ(set.size(), model.size());
  }
}

TEST(HashSet, GrowsByPrimes)
{
  kel::HashSet<std::string> set;
  EXPECT_FALSE(set.contains("x"));
  // above four fifths of 2, 7, 17 and 37, the next prime from 2 (capacity + 1) on
  std::size_t size = 0;
  for (const auto& [last, capacity] : {std::pair{1U, 2U}, {5U, 7U}, {13U, 17U}, {29U, 37U}, {60U, 79U}})
    for (; size < last; ++size) {
      EXPECT_FALSE(set.insert(std::string(1, static_cast<char>(size + 1))).wasPresent);
      EXPECT_EQ(set.capacity(), capacity) << size;
    }
  EXPECT_TRUE(set.insert("\1").wasPresent);
}

TEST(SetVector, HoldsTwoReferences)
{
  {
    kel::SetVector<Ref> set;
    const Ref a = new Counted, b = new Counted;
    set.push_back(a);
    set.push_back(b);
    set.push_back(a);
    EXPECT_EQ(set.size(), 2U);
    EXPECT_EQ(set.front(), a);
    EXPECT_EQ(a->getReferenceCount(), 3U);
    for (int i = 0; i < 50; ++i) set.push_back(new Counted); // both halves grow
    EXPECT_EQ(a->getReferenceCount(), 3U);
    EXPECT_EQ(Counted::s_alive, 52);
    set.clear();
    EXPECT_EQ(a->getReferenceCount(), 1U);
    EXPECT_EQ(Counted::s_alive, 2);
    set.push_back(a);
  }
  EXPECT_EQ(Counted::s_alive, 0);
}
