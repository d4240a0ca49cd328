#include "pointerClasses.h"
#include "ValueType.h"
#include "accessors.h"
#include "kel/Path.h"
#include "kelLua/Wrap.h"
#include <deque>

namespace kelEntities {

namespace wrap = kelLua::wrap;
using kelData::Attribute;
using kelData::EntityModel;

namespace {

constexpr const char* BASE = "kelData::EntityPtr";

/// The steps that enter the classes, and the texts that they point to.
class Package
{
public:
  Package()
  {
    for (const ValueType& type : ValueType::all())
      if (type.name) addType(type.name);
    m_entries.push_back(wrap::module("kelData", false));
    m_entries.push_back(wrap::klass("EntityPtr", BASE, "", nullptr));
    m_entries.push_back(wrap::function<getValue>("getValue"));
    m_entries.push_back(wrap::function<setValue>("setValue"));
    m_entries.push_back(wrap::end());
    m_entries.push_back(wrap::end());
  }

  void add(const EntityModel& model)
  {
    const kel::Path path(model.fullName());
    kel::String type = "kel";
    m_entries.push_back(wrap::module("kel", false));
    for (std::size_t i = 0; i + 1 < path.size(); ++i) {
      m_entries.push_back(wrap::module(keep(path.at(i)), false));
      type += "::" + path.at(i);
    }
    const char* name = keep(model.getName() + "Ptr");
    const char* typeName = keep(type + "::" + name);
    addType(typeName);
    m_entries.push_back(wrap::klass(name, typeName, BASE, nullptr));
    for (const auto& attribute : model.getAttributes()) add(*attribute);
    m_entries.insert(m_entries.end(), path.size() + 1, wrap::end());
  }

  void open(lua_State* L)
  {
    m_types.push_back({nullptr, nullptr, false});
    m_entries.push_back(wrap::end());
    wrap::openPackage(L, m_types.data(), m_entries.data());
  }

private:
  const char* keep(const kel::String& text) { return m_texts.emplace_back(text).c_str(); }
  /// A type whose values lie in their handles.
  void addType(const char* name) { m_types.push_back({name, nullptr, true}); }
  void add(const Attribute& attribute)
  {
    if (!ValueType::find(attribute.getImplementationTypeName())) return;
    wrap::Entry entry = wrap::variable<getVariable, setVariable>(attribute.getName().c_str());
    entry.context = &attribute;
    m_entries.push_back(entry);
  }

  std::deque<kel::String> m_texts;
  std::vector<wrap::TypeEntry> m_types;
  std::vector<wrap::Entry> m_entries;
};

} // namespace

void enterPointerClasses(lua_State* L, const std::vector<kel::ref_ptr<EntityModel>>& models)
{
  Package package;
  for (const auto& model : models) package.add(*model);
  package.open(L);
}

} // namespace kelEntities
