#include "kelData/EntityStorage.h"
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>

namespace {

using kel::ref_ptr;
using namespace kelData;

/// A storage, and a map from id to value that must always say the same.
class Checked
{
public:
  explicit Checked(bool useTable, EntityStorage::Rows rows)
  {
    m_model->addAttribute(m_value);
    m_model->addAttribute(m_text);
    m_storage = new EntityStorage(m_model.get(), rows);
    m_storage->setUseInstanceTable(useTable);
  }

  EntityStorage& storage() { return *m_storage; }
  std::size_t size() const { return m_expected.size(); }
  EntityPtr pick(std::size_t number)
  {
    auto found = m_expected.begin();
    std::advance(found, number % m_expected.size());
    return {m_storage.get(), found->first};
  }
  void entered(EntityPtr instance, int value)
  {
    const kel::Index row = instance.calculateIndex();
    ASSERT_NE(row, EntityStorage::NO_INDEX);
    if (m_storage->useInstanceTable())
      ASSERT_TRUE(m_used.insert(instance.getId()).second) << "an id came twice";
    else
      ASSERT_EQ(instance.getId(), row);
    ASSERT_TRUE(m_expected.emplace(instance.getId(), value).second);
    m_storage->data<int>(m_value)[row] = value;
    m_storage->data<kel::String>(m_text)[row] = textOf(value);
  }
  void left(EntityPtr instance) { m_expected.erase(instance.getId()); }
  int valueOf(EntityPtr instance) const { return m_expected.at(instance.getId()); }
  int storedValue(EntityPtr instance) { return m_storage->data<int>(m_value)[instance.calculateIndex()]; }
  /// Takes out of the expectation what the storage has dropped by itself, the instances of the last rows.
  void resizedDown(std::size_t size)
  {
    std::erase_if(m_expected, [&](const auto& entry) {
      return m_storage->idToIndex(entry.first) == EntityStorage::NO_INDEX;
    });
    ASSERT_EQ(m_expected.size(), size);
  }
  void cleared() { m_expected.clear(); }

  void verify()
  {
    m_storage->verifyConsistency();
    ASSERT_EQ(m_storage->size(), m_expected.size());
    for (const auto& [id, value] : m_expected) {
      const kel::Index row = m_storage->idToIndex(id);
      ASSERT_NE(row, EntityStorage::NO_INDEX) << id;
      ASSERT_EQ(m_storage->data<int>(m_value)[row], value) << id;
      ASSERT_EQ(m_storage->data<kel::String>(m_text)[row], textOf(value)) << id;
    }
  }

private:
  static kel::String textOf(int value) { return "the text of an instance, number " + std::to_string(value); }

  ref_ptr<EntityModel> m_model = new EntityModel("Random");
  Attribute* m_value = Attribute::create<int>("value", -1);
  Attribute* m_text = new kelData::ScalarAttribute("text", kelData::getType("String"));
  ref_ptr<EntityStorage> m_storage;
  std::map<kel::UInt32, int> m_expected;
  std::set<kel::UInt32> m_used;
};

class EntityRandom : public testing::TestWithParam<std::pair<bool, EntityStorage::Rows>>
{
protected:
  void create()
  {
    for (std::size_t count = m_random() % 20; count > 1; --count)
      one().entered(one().storage().createInstance(), m_next++);
    const kelData::EntityRange range = one().storage().createInstances(m_random() % 5);
    for (kel::UInt32 i = 0; i < range.size(); ++i) one().entered(range.at(i), m_next++);
  }
  void destroy()
  {
    for (std::size_t count = std::min<std::size_t>(m_random() % 20, one().size()); count > 0; --count) {
      EntityPtr instance = one().pick(m_random());
      one().left(instance);
      instance.destroy();
      instance.destroy();
      ASSERT_FALSE(instance.isValid());
    }
  }
  void transfer()
  {
    if (one().size() == 0) return;
    EntityPtr instance = one().pick(m_random());
    const int value = one().valueOf(instance);
    one().left(instance);
    instance.transfer(other().storage());
    ASSERT_EQ(other().storedValue(instance), value);
    other().entered(instance, value);
  }
  void copy()
  {
    if (one().size() == 0) return;
    const EntityPtr instance = one().pick(m_random());
    const EntityPtr copied = instance.copy(other().storage());
    ASSERT_EQ(other().storedValue(copied), one().valueOf(instance));
    other().entered(copied, m_next++);
  }
  void resize()
  {
    const std::size_t before = one().size(), size = m_random() % 200;
    const kel::Index firstNew = static_cast<kel::Index>(one().storage().getNumRows());
    one().storage().resize(size, m_random() % 2 == 0);
    if (size < before) one().resizedDown(size);
    for (std::size_t i = before; i < size; ++i)
      one().entered(one().storage().getInstances().at(static_cast<kel::UInt32>(firstNew + i - before)),
                    m_next++);
  }
  void clear()
  {
    one().storage().clear();
    one().cleared();
  }

  Checked& one() { return m_isSwapped ? m_second : m_first; }
  Checked& other() { return m_isSwapped ? m_first : m_second; }

  std::mt19937 m_random{20240229};
  bool m_isSwapped = false;
  int m_next = 0;
  Checked m_first{GetParam().first, GetParam().second};
  Checked m_second{GetParam().first, GetParam().second};
};

TEST_P(EntityRandom, AgreesWithAMap)
{
  constexpr int OPERATIONS = 100'000;
  for (int i = 0; i < OPERATIONS && !HasFatalFailure(); ++i) {
    m_isSwapped = m_random() % 2 != 0;
    const unsigned kind = m_random() % 1000;
    if (kind < 1)
      clear();
    else if (kind < 6)
      resize();
    else if (kind < 200)
      create();
    else if (kind < 400 || one().size() > 300)
      destroy();
    else if (kind < 700)
      transfer();
    else
      copy();
    if (i % 1000 == 0) {
      m_first.verify();
      m_second.verify();
    }
  }
}

std::string nameOf(const testing::TestParamInfo<EntityRandom::ParamType>& test)
{
  return std::string(test.param.first ? "Table" : "RowIds") +
         (test.param.second == EntityStorage::Rows::HELD ? "Held" : "Free");
}

INSTANTIATE_TEST_SUITE_P(Storages, EntityRandom,
                         testing::Values(std::pair(true, EntityStorage::Rows::FREE),
                                         std::pair(true, EntityStorage::Rows::HELD),
                                         std::pair(false, EntityStorage::Rows::FREE)),
                         nameOf);

} // namespace
