#include "accessors.h"
#include "ValueType.h"
#include "kelData/EntityStorage.h"
#include "kelLua/Wrap.h"

namespace kelEntities {

namespace wrap = kelLua::wrap;
using kelData::Attribute;
using kelData::EntityPtr;
using kelData::EntityStorage;

namespace {

const wrap::Type& selfType()
{
  static const wrap::Type& type = wrap::type("const kelData::EntityPtr");
  return type;
}

const Attribute& contextAttribute(lua_State* L)
{
  return *static_cast<const Attribute*>(lua_touserdata(L, lua_upvalueindex(1)));
}

/// Raises an error about an attribute; the format's %s is its name.
[[noreturn]] void fail(lua_State* L, const char* format, const char* attribute)
{
  lua_pushfstring(L, format, attribute);
  wrap::outOfRange(L);
}

/// Where an instance has the values of an attribute. Raises an error when it has none, or is gone.
std::byte* locate(lua_State* L, const EntityPtr& self, const Attribute& attribute)
{
  const char* name = attribute.getName().c_str();
  const kel::Index row = self.calculateIndex();
  if (row == EntityStorage::NO_INDEX) fail(L, "attribute '%s' of an entity that is gone", name);
  if (attribute.isShared()) {
    kelData::Value* value = self.getStorage()->getSharedValue(&attribute);
    if (value) return static_cast<std::byte*>(value->ptr());
  } else if (kelData::Buffer* buffer = self.getStorage()->getBuffer(&attribute)) {
    return buffer->at(row);
  }
  fail(L, "the entity has no attribute '%s'", name);
}

std::size_t countOf(const Attribute& attribute)
{
  const kelData::Format* format = attribute.getDefaultFormat();
  return format ? attribute.getElementSize() / format->getElementSize() : 1;
}

const ValueType& typeOf(lua_State* L, const Attribute& attribute)
{
  const ValueType* type = ValueType::find(attribute.getImplementationTypeName());
  if (!type) fail(L, "attribute '%s' has no values for scripts", attribute.getName().c_str());
  return *type;
}

void push(lua_State* L, const EntityPtr& self, const Attribute& attribute)
{
  const ValueType& type = typeOf(L, attribute);
  const std::byte* values = locate(L, self, attribute);
  const auto count = static_cast<int>(countOf(attribute));
  if (count == 1) return type.push(L, values);
  lua_createtable(L, count, 0);
  for (int i = 0; i < count; ++i, values += attribute.getElementSize() / count) {
    type.push(L, values);
    lua_rawseti(L, -2, i + 1);
  }
}

/// Sets the values to those in the table at a stack index; false, with the failure, if one does not fit.
bool readAll(lua_State* L, const Attribute& attribute, const ValueType& type, std::byte* values, int n,
             tolua_Error* failure)
{
  const auto count = static_cast<int>(countOf(attribute));
  for (int i = 0; i < count; ++i, values += attribute.getElementSize() / count) {
    lua_rawgeti(L, n, i + 1);
    if (!type.read(L, lua_gettop(L), values, failure)) return false;
    lua_pop(L, 1);
  }
  return true;
}

/// The same; false also leaves the values as they were.
bool assignAll(lua_State* L, const Attribute& attribute, const ValueType& type, std::byte* values, int n,
               tolua_Error* failure)
{
  if (!wrap::isTable(L, n, failure)) return false;
  std::vector<std::byte> old(attribute.getElementSize());
  attribute.construct(old.data());
  attribute.assign(old.data(), values);
  const bool fits = readAll(L, attribute, type, values, n, failure);
  if (!fits) attribute.assign(values, old.data());
  attribute.destroy(old.data());
  return fits;
}

void assign(lua_State* L, const EntityPtr& self, const Attribute& attribute, int n)
{
  const ValueType& type = typeOf(L, attribute);
  std::byte* values = locate(L, self, attribute);
  if (attribute.isReadOnly() || attribute.isShared())
    fail(L, "attribute '%s' is read-only", attribute.getName().c_str());
  tolua_Error failure;
  const bool fits = countOf(attribute) > 1 ? assignAll(L, attribute, type, values, n, &failure)
                                           : type.read(L, n, values, &failure);
  if (!fits) wrap::badValue(L, &failure);
}

/// The attribute of the name at stack index 2. Raises an error if the instance has none of that name.
const Attribute& namedAttribute(lua_State* L, const EntityPtr& self, const char* function)
{
  tolua_Error failure;
  if (!wrap::isString(L, 2, &failure)) wrap::failed(L, function, &failure, nullptr);
  const char* name = wrap::text(L, 2);
  const EntityStorage* storage = self.getStorage();
  if (!storage) fail(L, "attribute '%s' of an entity that is gone", name);
  const Attribute* attribute = storage->getAttribute(name);
  if (!attribute) fail(L, "the entity has no attribute '%s'", name);
  return *attribute;
}

const EntityPtr& self(lua_State* L, const char* function)
{
  const EntityPtr* object = nullptr;
  tolua_Error failure;
  if (!wrap::isSelf(L, object, selfType(), &failure)) wrap::failed(L, function, &failure, nullptr);
  if (!object) wrap::badSelf(L, function);
  return *object;
}

} // namespace

int getVariable(lua_State* L)
{
  const Attribute& attribute = contextAttribute(L);
  push(L, *wrap::owner<const EntityPtr>(L, selfType(), attribute.getName().c_str()), attribute);
  return 1;
}

int setVariable(lua_State* L)
{
  const Attribute& attribute = contextAttribute(L);
  assign(L, *wrap::owner<const EntityPtr>(L, selfType(), attribute.getName().c_str()), attribute, 2);
  return 0;
}

int getValue(lua_State* L)
{
  const EntityPtr& entity = self(L, "getValue");
  push(L, entity, namedAttribute(L, entity, "getValue"));
  return 1;
}

int setValue(lua_State* L)
{
  const EntityPtr& entity = self(L, "setValue");
  lua_settop(L, 3);
  assign(L, entity, namedAttribute(L, entity, "setValue"), 3);
  return 0;
}

} // namespace kelEntities
