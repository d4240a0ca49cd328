// Package test_Golden, made from test_Golden.pkg by the binding generator.
#include "kelLua/Wrap.h"
#include "Fixture.h"

namespace wrap = kelLua::wrap;

namespace {

const wrap::Type& type_const_test__Body = wrap::type("const test::Body");
const wrap::Type& type_const_test__Pair = wrap::type("const test::Pair");
const wrap::Type& type_const_test__Vector = wrap::type("const test::Vector");
const wrap::Type& type_test__Body = wrap::type("test::Body");
const wrap::Type& type_test__Holder = wrap::type("test::Holder");
const wrap::Type& type_test__Pair = wrap::type("test::Pair");
const wrap::Type& type_test__Streamed = wrap::type("test::Streamed");
const wrap::Type& type_test__Vector = wrap::type("test::Vector");

int tolua_collect_test__Body(lua_State* L) { return wrap::collect<test::Body>(L, type_const_test__Body); }
int tolua_collect_test__Pair(lua_State* L) { return wrap::collect<test::Pair>(L, type_const_test__Pair); }
int tolua_collect_test__Vector(lua_State* L) { return wrap::collect<test::Vector>(L, type_const_test__Vector); }
static_assert(wrap::hasBaseAtStart<test::Body, kel::Referenced>());
static_assert(wrap::isComplete<test::Body>, "include its header, or list it in opaque_types.txt");
static_assert(wrap::isComplete<test::Vector>, "include its header, or list it in opaque_types.txt");

int tolua_printed_test__Vector(lua_State* L) { return wrap::printed<test::Vector>(L, type_const_test__Vector); }

int tolua_test_Golden_test_Vector_new00_any(lua_State* L, int top, bool local)
{
  tolua_Error e;
  double a2{};
  if (!(wrap::isNumber(L, 2, a2, &e) && wrap::isEnd(top, 3, &e)))
    wrap::failed(L, "new", &e, "       new(number) -> test::Vector\n       new(numberarray) -> test::Vector");
  wrap::construct<test::Vector>(L, type_test__Vector, local, a2);
  return 1;
}

int tolua_test_Golden_test_Vector_new01_any(lua_State* L, int top, bool local)
{
  tolua_Error e;
  if (!(wrap::isEnd(top, 3, &e) && wrap::isTable(L, 2, &e) && wrap::isNumberArray(L, 2, 3, &e)))
    return tolua_test_Golden_test_Vector_new00_any(L, top, local);
  wrap::construct<test::Vector>(L, type_test__Vector, local, wrap::NumberArray<float, 3>(L, 2).values);
  return 1;
}

int tolua_test_Golden_test_Vector_new_any(lua_State* L, bool local)
{
  wrap::isClass(L, type_test__Vector);
  const int top = lua_gettop(L);
  switch (top) {
  case 2:
    return tolua_test_Golden_test_Vector_new01_any(L, top, local);
  default:
    return tolua_test_Golden_test_Vector_new00_any(L, top, local);
  }
}
int tolua_test_Golden_test_Vector_new(lua_State* L) { return tolua_test_Golden_test_Vector_new_any(L, false); }
int tolua_test_Golden_test_Vector_new_local(lua_State* L) { return tolua_test_Golden_test_Vector_new_any(L, true); }

int tolua_test_Golden_test_Vector_axis00(lua_State* L)
{
  tolua_Error e;
  double a2{};
  if (!(wrap::isClass(L, type_test__Vector) && wrap::isNumber(L, 2, a2, &e) && wrap::isEnd(lua_gettop(L), 3, &e)))
    wrap::failed(L, "axis", &e, "       static axis(number) -> test::Vector");
  wrap::pushCopy<test::Vector>(L, test::Vector::axis(wrap::toNumber<int>(a2)), type_test__Vector);
  return 1;
}

int tolua_test_Golden_test_Vector_length00(lua_State* L)
{
  tolua_Error e;
  const test::Vector* self{};
  if (!(wrap::isSelf(L, self, type_const_test__Vector, &e) && wrap::isEnd(lua_gettop(L), 2, &e)))
    wrap::failed(L, "length", &e, "       const length() -> number");
  if (!self) wrap::badSelf(L, "length");
  wrap::pushNumber(L, self->length());
  return 1;
}

int tolua_test_Golden_test_Vector_set00(lua_State* L, int top)
{
  tolua_Error e;
  test::Vector* self{};
  const test::Vector* a2{};
  if (!(wrap::isSelf(L, self, type_test__Vector, &e) && wrap::isReference(L, 2, a2, type_const_test__Vector, &e) && wrap::isEnd(top, 3, &e)))
    wrap::failed(L, "set", &e, "       set(const test::Vector)\n       set(number, number=0)");
  if (!self) wrap::badSelf(L, "set");
  self->set(*a2);
  return 0;
}

void tolua_test_Golden_test_Vector_set01_body([[maybe_unused]] test::Vector* self, [[maybe_unused]] double value, [[maybe_unused]] unsigned int index) { (*self)[int(index)] = value; }
int tolua_test_Golden_test_Vector_set01(lua_State* L, int top)
{
  tolua_Error e;
  test::Vector* self{};
  double a2{};
  if (!(wrap::isEnd(top, 4, &e) && wrap::isNumber(L, 2, a2, &e) && wrap::optNumber(L, 3, &e) && wrap::isSelf(L, self, type_test__Vector, &e)))
    return tolua_test_Golden_test_Vector_set00(L, top);
  if (!self) wrap::badSelf(L, "set");
  tolua_test_Golden_test_Vector_set01_body(self, a2, wrap::number<unsigned int>(L, 3, static_cast<unsigned int>(0)));
  return 0;
}

int tolua_test_Golden_test_Vector_set(lua_State* L)
{
  const int top = lua_gettop(L);
  switch (top) {
  case 2:
    return lua_type(L, 2) == LUA_TUSERDATA ? tolua_test_Golden_test_Vector_set00(L, top) : tolua_test_Golden_test_Vector_set01(L, top);
  case 3:
    return tolua_test_Golden_test_Vector_set01(L, top);
  default:
    return tolua_test_Golden_test_Vector_set00(L, top);
  }
}

int tolua_test_Golden_test_Vector__add00(lua_State* L)
{
  tolua_Error e;
  const test::Vector* self{};
  const test::Vector* a2{};
  if (!(wrap::isSelf(L, self, type_const_test__Vector, &e) && wrap::isReference(L, 2, a2, type_const_test__Vector, &e) && wrap::isEnd(lua_gettop(L), 3, &e)))
    wrap::failed(L, ".add", &e, "       const .add(const test::Vector) -> test::Vector");
  if (!self) wrap::badSelf(L, "operator+");
  wrap::pushCopy<test::Vector>(L, *self + *a2, type_test__Vector);
  return 1;
}

int tolua_test_Golden_test_Vector__sub00(lua_State* L)
{
  tolua_Error e;
  const test::Vector* self{};
  if (!(wrap::isSelf(L, self, type_const_test__Vector, &e) && wrap::isEnd(lua_gettop(L), 2, &e)))
    wrap::failed(L, ".sub", &e, "       const .sub() -> test::Vector");
  if (!self) wrap::badSelf(L, "operator-");
  wrap::pushCopy<test::Vector>(L, -*self, type_test__Vector);
  return 1;
}

int tolua_test_Golden_test_Vector__seti00(lua_State* L)
{
  tolua_Error e;
  test::Vector* self{};
  double a2{};
  double a3{};
  if (!(wrap::isSelf(L, self, type_test__Vector, &e) && wrap::isNumber(L, 2, a2, &e) && wrap::isNumber(L, 3, a3, &e) && wrap::isEnd(lua_gettop(L), 4, &e)))
    wrap::failed(L, ".seti", &e, "       .seti(number, number)");
  if (!self) wrap::badSelf(L, "operator&[]");
  (*self)[wrap::toNumber<int>(a2)] = a3;
  return 0;
}

int tolua_test_Golden_test_Vector__geti00(lua_State* L)
{
  tolua_Error e;
  test::Vector* self{};
  double a2{};
  if (!(wrap::isSelf(L, self, type_test__Vector, &e) && wrap::isNumber(L, 2, a2, &e) && wrap::isEnd(lua_gettop(L), 3, &e)))
    wrap::failed(L, ".geti", &e, "       .geti(number) -> number");
  if (!self) wrap::badSelf(L, "operator[]");
  wrap::pushNumber(L, (*self)[wrap::toNumber<int>(a2)]);
  return 1;
}

int tolua_test_Golden_test_Vector__test__Pair00(lua_State* L)
{
  tolua_Error e;
  const test::Vector* self{};
  if (!(wrap::isSelf(L, self, type_const_test__Vector, &e) && wrap::isEnd(lua_gettop(L), 2, &e)))
    wrap::failed(L, ".test::Pair", &e, "       const .test::Pair() -> test::Pair");
  if (!self) wrap::badSelf(L, "operatortest::Pair");
  wrap::pushCopy<test::Pair>(L, self->operator test::Pair(), type_test__Pair);
  return 1;
}

int tolua_get_test__Vector_x(lua_State* L)
{
  auto* self = wrap::owner<test::Vector>(L, type_const_test__Vector, "x");
  wrap::pushNumber(L, self->x);
  return 1;
}

int tolua_set_test__Vector_x(lua_State* L)
{
  auto* self = wrap::owner<test::Vector>(L, type_const_test__Vector, "x");
  tolua_Error e;
  double a2{};
  if (!wrap::isNumber(L, 2, a2, &e)) wrap::badValue(L, &e);
  self->x = a2;
  return 0;
}

int tolua_test_Golden_test_Body_new00_any(lua_State* L, bool local)
{
  tolua_Error e;
  if (!(wrap::isClass(L, type_test__Body) && wrap::isString(L, 2, &e) && wrap::isEnd(lua_gettop(L), 3, &e)))
    wrap::failed(L, "new", &e, "       new(string) -> test::Body, string");
  std::string a2 = wrap::string(L, 2);
  wrap::construct<test::Body>(L, type_test__Body, local, a2);
  wrap::pushString(L, a2);
  return 2;
}

int tolua_test_Golden_test_Body_new(lua_State* L) { return tolua_test_Golden_test_Body_new00_any(L, false); }
int tolua_test_Golden_test_Body_new_local(lua_State* L) { return tolua_test_Golden_test_Body_new00_any(L, true); }

int tolua_test_Golden_test_Body_Name00(lua_State* L)
{
  tolua_Error e;
  const test::Body* self{};
  if (!(wrap::isSelf(L, self, type_const_test__Body, &e) && wrap::isEnd(lua_gettop(L), 2, &e)))
    wrap::failed(L, "Name", &e, "       const Name() -> string");
  if (!self) wrap::badSelf(L, "getName");
  wrap::pushString(L, self->getName());
  return 1;
}

int tolua_test_Golden_test_Body_setPosition00(lua_State* L)
{
  tolua_Error e;
  test::Body* self{};
  const test::Vector* a2{};
  if (!(wrap::isSelf(L, self, type_test__Body, &e) && wrap::optReference(L, 2, a2, type_const_test__Vector, &e) && wrap::isEnd(lua_gettop(L), 3, &e)))
    wrap::failed(L, "setPosition", &e, "       setPosition(const test::Vector=test::Vector())");
  if (!self) wrap::badSelf(L, "setPosition");
  self->setPosition(a2 ? *a2 : static_cast<const test::Vector&>(test::Vector()));
  return 0;
}

int tolua_test_Golden_test_Body_position00(lua_State* L, int top)
{
  tolua_Error e;
  test::Body* self{};
  if (!(wrap::isSelf(L, self, type_test__Body, &e) && wrap::isEnd(top, 2, &e)))
    wrap::failed(L, "position", &e, "       position() -> test::Vector\n       const position() -> const test::Vector");
  if (!self) wrap::badSelf(L, "position");
  wrap::pushMember<test::Vector>(L, &(self->position()), type_test__Vector, self);
  return 1;
}

int tolua_test_Golden_test_Body_position01(lua_State* L, int top)
{
  tolua_Error e;
  const test::Body* self{};
  if (!(wrap::isEnd(top, 2, &e) && wrap::isSelf(L, self, type_const_test__Body, &e)))
    return tolua_test_Golden_test_Body_position00(L, top);
  if (!self) wrap::badSelf(L, "position");
  wrap::pushMember<test::Vector>(L, &(self->position()), type_const_test__Vector, self);
  return 1;
}

int tolua_test_Golden_test_Body_position(lua_State* L)
{
  const int top = lua_gettop(L);
  switch (top) {
  case 1:
    return tolua_test_Golden_test_Body_position01(L, top);
  default:
    return tolua_test_Golden_test_Body_position00(L, top);
  }
}

int tolua_get_test__Body_target_ptr(lua_State* L)
{
  auto* self = wrap::owner<test::Body>(L, type_const_test__Body, "target");
  wrap::pushMember<test::Body>(L, wrap::plain(self->target), type_test__Body, self);
  return 1;
}

int tolua_set_test__Body_target_ptr(lua_State* L)
{
  auto* self = wrap::owner<test::Body>(L, type_const_test__Body, "target");
  tolua_Error e;
  test::Body* a2{};
  if (!wrap::isPointer(L, 2, a2, type_test__Body, &e)) wrap::badValue(L, &e);
  self->target = a2;
  return 0;
}

int tolua_get_test__Body_label(lua_State* L)
{
  auto* self = wrap::owner<test::Body>(L, type_const_test__Body, "label");
  wrap::pushString(L, self->label);
  return 1;
}

int tolua_get_test__Body___test__Streamed__(lua_State* L)
{
  auto* self = wrap::owner<test::Body>(L, type_const_test__Body, "__test");
  wrap::pushMember<test::Streamed>(L, self, type_test__Streamed, self);
  return 1;
}

int tolua_test_Golden_test_Holder_delete00(lua_State* L)
{
  tolua_Error e;
  test::Holder* self{};
  if (!(wrap::isSelf(L, self, type_test__Holder, &e) && wrap::isEnd(lua_gettop(L), 2, &e)))
    wrap::failed(L, "delete", &e, "       delete()");
  return wrap::destroy(L, self);
}

const char CHUNK_1[] = R"lua(
function test.Body:both( other )
return self, other
end---------- )lua";
const wrap::TypeEntry TYPES[] = {
    {"kel::Referenced", nullptr, false},
    {"test::Body", tolua_collect_test__Body, std::is_trivially_destructible_v<test::Body>},
    {"test::Holder", nullptr, false},
    {"test::Pair", tolua_collect_test__Pair, std::is_trivially_destructible_v<test::Pair>},
    {"test::Streamed", nullptr, false},
    {"test::Unused", nullptr, false},
    {"test::Vector", tolua_collect_test__Vector, std::is_trivially_destructible_v<test::Vector>},
    {nullptr, nullptr, false},
};

const wrap::Entry MEMBERS[] = {
    wrap::module("test", false),
    wrap::klass("Vector", "test::Vector", "", tolua_collect_test__Vector),
    wrap::function<tolua_printed_test__Vector>(".tostring"),
    wrap::constant("X", 0),
    wrap::constant("Y", 1),
    wrap::constant("UP", 2),
    wrap::function<tolua_test_Golden_test_Vector_new>("new"),
    wrap::function<tolua_test_Golden_test_Vector_new_local>("new_local"),
    wrap::function<tolua_test_Golden_test_Vector_new_local>(".call"),
    wrap::function<tolua_test_Golden_test_Vector_axis00>("axis"),
    wrap::function<tolua_test_Golden_test_Vector_length00>("length"),
    wrap::function<tolua_test_Golden_test_Vector_set>("set"),
    wrap::operation<tolua_test_Golden_test_Vector__add00>(".add"),
    wrap::operation<tolua_test_Golden_test_Vector__sub00>(".sub"),
    wrap::function<tolua_test_Golden_test_Vector__seti00>(".seti"),
    wrap::elements<tolua_test_Golden_test_Vector__geti00>(".geti"),
    wrap::function<tolua_test_Golden_test_Vector__test__Pair00>(".test::Pair"),
    wrap::variable<tolua_get_test__Vector_x, tolua_set_test__Vector_x>("x"),
    wrap::end(),
    wrap::klass("Body", "test::Body", "kel::Referenced", tolua_collect_test__Body),
    wrap::function<tolua_test_Golden_test_Body_new>("new"),
    wrap::function<tolua_test_Golden_test_Body_new_local>("new_local"),
    wrap::function<tolua_test_Golden_test_Body_new_local>(".call"),
    wrap::function<tolua_test_Golden_test_Body_Name00>("Name"),
    wrap::function<tolua_test_Golden_test_Body_setPosition00>("setPosition"),
    wrap::function<tolua_test_Golden_test_Body_position>("position"),
    wrap::variable<tolua_get_test__Body_target_ptr, tolua_set_test__Body_target_ptr>("target"),
    wrap::variable<tolua_get_test__Body_label>("label"),
    wrap::variable<tolua_get_test__Body___test__Streamed__>("__test__Streamed__"),
    wrap::end(),
    wrap::klass("Unused", "test::Unused", "", nullptr),
    wrap::end(),
    wrap::klass("Holder", "test::Holder", "", nullptr),
    wrap::function<tolua_test_Golden_test_Holder_delete00>("delete"),
    wrap::end(),
    wrap::end(),
    wrap::chunk("tolua: embedded Lua code 1", CHUNK_1),
    wrap::end(),
};

} // namespace

int tolua_test_Golden_open(lua_State* L)
{
  return wrap::openPackage(L, TYPES, MEMBERS);
}

int luaopen_test_Golden(lua_State* L)
{
  return tolua_test_Golden_open(L);
}
