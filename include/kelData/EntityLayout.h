#pragma once
#include "kelData/EntityStorage.h"
#include <functional>
#include <vector>

namespace kelData {

/// Builds a model and a storage whose columns C++ code reaches by pointers: declare the columns, then create
/// the storage.
class EntityLayout
{
public:
  explicit EntityLayout(const kel::Name& name) : m_model(new EntityModel(name)) {}

  /// Declares an attribute. `column` is set by `createStorage` to the value of row 0, for good.
  template <class T> void column(const kel::Name& name, T*& column, const T& defaultValue = T())
  {
    Attribute* attribute = Attribute::create<T>(name, defaultValue);
    m_model->addAttribute(attribute);
    m_bindings.push_back([attribute, &column](EntityStorage& s) { column = s.data<T>(attribute); });
  }

  /// The same for values on which others depend, so that the engine alone writes them.
  template <class T> void readOnlyColumn(const kel::Name& name, T*& pointer, const T& defaultValue = T())
  {
    column(name, pointer, defaultValue);
    m_model->getAttributes().back()->setReadOnly(true);
  }

  /// A new storage of the declared attributes, whose rows belong to objects.
  kel::ref_ptr<EntityStorage> createStorage()
  {
    kel::ref_ptr<EntityStorage> storage = new EntityStorage(m_model.get(), EntityStorage::Rows::HELD);
    for (const auto& bind : m_bindings) bind(*storage);
    return storage;
  }

private:
  kel::ref_ptr<EntityModel> m_model;
  std::vector<std::function<void(EntityStorage&)>> m_bindings;
};

} // namespace kelData
