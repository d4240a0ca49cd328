-- The C++ source of a package: one short function a wrapper, all behaviour in kelLua/Wrap.h.
local T, C, O, signature = load "template", load "cpp_types", load "overloads", load "signature"

local FILE = [[
// Package ${name}, made from ${name}.pkg by the binding generator.
#include "kelLua/Wrap.h"
${includes}

namespace wrap = kelLua::wrap;

namespace {

${types}

${collectors}
${bases}
${checks}

${wrappers}

${chunks}
const wrap::TypeEntry TYPES[] = {
    ${typeEntries}
    {nullptr, nullptr, false},
};

const wrap::Entry MEMBERS[] = {
    ${members}
    wrap::end(),
};

} // namespace

int tolua_${name}_open(lua_State* L)
{
  return wrap::openPackage(L, TYPES, MEMBERS);
}

int luaopen_${name}(lua_State* L)
{
  return tolua_${name}_open(L);
}
]]

local WRAPPER = [[
${body}
int ${function}(lua_State* L${parameters})
{
  tolua_Error e;
  ${fetched}
  if (!(${guard}))
    ${otherwise}
  ${self}
  ${locals}
  ${call}
  ${extra}
  return ${count};
}]]

-- the message is copied before the error is raised, so that no exception object is left behind
local BOUNDED = [[
bool inside = true;
try {
  ${call}
} catch (const std::out_of_range& fault) {
  lua_pushstring(L, fault.what());
  inside = false;
}
if (!inside) wrap::outOfRange(L);]]

local GETTER = [[
int ${get}(lua_State* L)
{
  ${owner}
  ${push}
  return 1;
}]]

local SETTER = [[
int ${set}(lua_State* L)
{
  ${owner}
  tolua_Error e;
  ${fetched}
  if (!${guard}) wrap::badValue(L, &e);
  ${member} = ${value};
  return 0;
}]]

local record = C.record
local wrapperName = O.wrapperName
local function collectorName(typeString) return "tolua_collect_"..C.identifier(typeString) end

local function bodyFunction(f)
  if not f.body then return "" end
  local parameters = {}
  if f.self == "plain" then parameters[1] = "[[maybe_unused]] "..f.class.type.."* self"
  elseif f.self == "const" then parameters[1] = "[[maybe_unused]] const "..f.class.type.."* self" end
  for _, argument in ipairs(f.args) do
    parameters[#parameters + 1] = "[[maybe_unused]] "..C.declared(argument).." "..argument.name
  end
  return C.declared(f.result).." "..f.call.."("..table.concat(parameters, ", ")..") "..f.body
end

local function selfType(f) return (f.self == "const" and "const " or "")..f.class.type end
local function hasSelf(f) return f.self == "plain" or f.self == "const" end

local function pushBasic(t, expression)
  local push = {number = "pushNumber", bool = "pushBool", string = "pushString", address = "pushAddress"}
  return push[t.kind] and "wrap::"..push[t.kind].."(L, "..expression..");"
end

local function pushObject(t, expression, member)
  local type = record(t.typeString)
  if t.kind == "value" then return "wrap::pushCopy<"..t.cpp..">(L, "..expression..", "..type..");" end
  local address = t.kind == "reference" and "&("..expression..")" or "wrap::plain("..expression..")"
  if member then return "wrap::pushMember<"..t.cpp..">(L, "..address..", "..type..", self);" end
  return "wrap::pushObject<"..t.cpp..">(L, "..address..", "..type..");"
end

local function construct(f, actual)
  local list = T.each({"L", record(f.class.type), "local", table.concat(actual, ", ")}, ", ", function(text) return text end)
  return "wrap::construct<"..f.class.type..">("..list..");"
end

local function pushResult(f, call)
  if f.constructor then return "wrap::pushNew(L, "..call..", "..record(f.class.type)..", local);" end
  if f.result.kind == "void" then return call..";" end
  return pushBasic(f.result, call) or pushObject(f.result, call, hasSelf(f))
end

local OPERATORS = {["[]"] = "(*self)[${a}]", ["&[]"] = "(*self)[${a}] = ${b}"}

-- operators are written out, as they may be free functions
local function callText(f, actual)
  local prefix = ""
  if f.body then
    if hasSelf(f) then table.insert(actual, 1, "self") end
  elseif OPERATORS[f.operator] then return T.fill(OPERATORS[f.operator], {a = actual[1] or "", b = actual[2] or ""})
  elseif f.operator and #actual == 0 and f.operator == "-" then return "-*self"
  elseif f.operator and #actual == 1 then return "*self "..f.operator.." "..actual[1]
  elseif hasSelf(f) then prefix = "self->" end
  return prefix..f.call.."("..table.concat(actual, ", ")..")"
end

local function otherwise(f, any)
  if f.number > 0 and O.isDispatched(f) then return "return wrap::notTaken;" end
  if f.number > 0 then
    return "return "..wrapperName(f, f.number - 1)..any.."(L"..O.arguments(f)..");"
  end
  local lines = T.each(f.overloads, "\n", function(overload) return "       "..signature.line(overload) end)
  return "wrap::failed(L, "..T.quote(f.name)..", &e, "..T.quote(lines)..");"
end

local function fetchedLocals(f)
  local locals = {hasSelf(f) and selfType(f).."* self{};" or nil}
  for _, argument in ipairs(f.args) do locals[#locals + 1] = C.fetched(argument, argument.n) end
  return table.concat(locals, "\n")
end

local function wrapper(f)
  local any = f.constructor and "_any" or ""
  local guard = C.guards(f)
  local actual, locals, extra = {}, {}, {}
  for _, argument in ipairs(f.args) do
    local value = C.read(argument, argument.n, f.name)
    if argument.kind == "reference" and C.isNull(argument.default) then
      table.insert(locals, 1, "auto& r"..argument.n.." = "..value..";") -- raises, so it goes before any text is copied
      value = "r"..argument.n
    elseif argument.inout then
      locals[#locals + 1] = argument.cpp.." a"..argument.n.." = "..value..";"
      extra[#extra + 1] = pushBasic(argument, "a"..argument.n)
      value = "a"..argument.n
    end
    actual[#actual + 1] = value
  end
  local results = (f.result.kind == "void" and 0 or 1) + #extra
  local call = f.constructor and not f.body and construct(f, actual) or pushResult(f, callText(f, actual))
  if f.bounded then call = T.fill(BOUNDED, {call = call}) end
  return T.fill(WRAPPER, {
    body = bodyFunction(f),
    ["function"] = wrapperName(f)..any, parameters = O.parameters(f),
    fetched = fetchedLocals(f), guard = guard, otherwise = otherwise(f, any),
    self = hasSelf(f) and "if (!self) wrap::badSelf(L, "..T.quote(f.errorName)..");" or "",
    locals = table.concat(locals, "\n"), call = call, extra = table.concat(extra, "\n"),
    count = results,
  })..O.entry(f)
end

local DESTRUCTOR = [[
int ${wrapper}(lua_State* L${parameters})
{
  tolua_Error e;
  ${type}* self{};
  if (!(${guard}))
    ${otherwise}
  return wrap::destroy(L, self);
}]]

local function destructor(f)
  return T.fill(DESTRUCTOR, {wrapper = wrapperName(f), parameters = O.parameters(f), guard = C.guards(f), otherwise = otherwise(f, ""), type = f.class.type})
end

local function variableAccess(v)
  local owner = v.static and "" or "auto* self = wrap::owner<"..v.class.type..">(L, "..record("const "..v.class.type)..", "..T.quote(v.errorName)..");"
  local member = (v.static and "" or "self->")..v.member
  local t, push = v.type
  if v.inherits then
    push = "wrap::pushMember<"..v.inherits..">(L, self, "..record(v.inherits)..", self);"
  else
    local view = {kind = t.kind == "value" and "reference" or t.kind, cpp = t.cpp, typeString = t.typeString}
    push = pushBasic(t, member) or pushObject(view, member, not v.static)
  end
  local getter = T.fill(GETTER, {get = v.get, owner = owner, push = push})
  if v.readonly then return getter end
  return getter.."\n\n"..T.fill(SETTER, {
    set = v.set, owner = owner, fetched = C.fetched(t, 2) or "", guard = C.guard(t, 2), member = member, value = C.read(t, 2, v.name),
  })
end


-- f for every item, the inner ones of classes and modules behind their own
local function walk(items, f)
  for _, item in ipairs(items) do
    f(item)
    if item.tag == "class" or item.tag == "module" then walk(item.items, f) end
  end
end
local function collect(items, separator, f)
  local parts = {}
  walk(items, function(item) parts[#parts + 1] = f(item) end)
  return table.concat(parts, separator)
end

local function printedName(class) return "tolua_printed_"..C.identifier(class.type) end

local function wrapperText(item)
  if item.tag == "class" and item.printed then
    return "int "..printedName(item).."(lua_State* L) { return wrap::printed<"..item.type..">(L, "..
      record("const "..item.type).."); }"
  end
  if item.tag == "function" then return item.destructor and destructor(item) or wrapper(item) end
  if item.tag == "variable" then return variableAccess(item) end
end

-- type string -> C++ type of everything that this package must be able to destroy
local function collectedTypes(package)
  local types = {}
  walk(package.items, function(item)
    if item.tag == "class" and item.collected then types[item.type] = item.type end
    if item.tag == "function" and item.result.kind == "value" then types[item.result.cpp] = item.result.cpp end
  end)
  return types
end

local function baseCheck(class)
  if not string.find(class.base, "::") then return nil end
  return "static_assert(wrap::hasBaseAtStart<"..class.type..", "..class.base..">());"
end

-- A result of an incomplete type would not be recognised as counted, and its handle would outlive it.
local function completenessChecks(package)
  local types = {}
  walk(package.items, function(item)
    local t = item.tag == "function" and not item.constructor and item.result or item.tag == "variable" and item.type
    if t and (t.kind == "pointer" or t.kind == "reference") and not package.opaque[t.cpp] then types[t.cpp] = true end
  end)
  return T.each(package.types, "\n", function(type)
    local hint = T.quote("include its header, or list it in opaque_types.txt")
    return types[type] and "static_assert(wrap::isComplete<"..type..">, "..hint..");"
  end)
end

local function printer(class)
  return class.printed and "wrap::function<"..printedName(class)..'>(".tostring"),' or ""
end

-- those whose events need not search for them
local EVENT_ENTRIES = {[".add"] = "operation", [".sub"] = "operation", [".mul"] = "operation", [".div"] = "operation",
  [".geti"] = "elements"}

local members
local function member(item)
  if item.tag == "module" then
    local head = "wrap::module("..T.quote(item.name)..", "..tostring(item.hasVariables or false).."),"
    return T.lines {head, members(item.items), "wrap::end(),"}
  elseif item.tag == "class" then
    local collector = item.collected and collectorName(item.type) or "nullptr"
    local names = T.each({item.name, item.type, item.base}, ", ", T.quote)
    return T.lines {"wrap::klass("..names..", "..collector.."),", printer(item), members(item.items), "wrap::end(),"}
  elseif item.tag == "function" then
    if not O.isLast(item) then return nil end
    local suffixes = item.constructor and {new = "", new_local = "_local", [".call"] = "_local"} or {[item.name] = ""}
    return T.each(item.constructor and {"new", "new_local", ".call"} or {item.name}, "\n", function(name)
      return "wrap::"..(EVENT_ENTRIES[name] or "function").."<"..O.entryName(item)..suffixes[name]..">("..T.quote(name).."),"
    end)
  elseif item.tag == "variable" then
    local accessors = item.get..(item.readonly and "" or ", "..item.set)
    return "wrap::variable<"..accessors..">("..T.quote(item.name).."),"
  elseif item.tag == "enum" then
    return T.each(item.items, "\n", function(e) return "wrap::constant("..T.quote(e.name)..", "..e.value.."),"  end)
  elseif item.tag == "chunk" then
    return "wrap::chunk(\"tolua: embedded Lua code "..item.number.."\", CHUNK_"..item.number.."),"
  end
end
function members(items) return T.each(items, "\n", member) end

-- the dashes at the end are a Lua comment, which keeps the line end in front of what follows
local function chunkTexts(package)
  local number = 0
  return collect(package.items, "\n", function(item)
    if item.tag ~= "chunk" then return nil end
    number = number + 1
    item.number = number
    return "const char CHUNK_"..number.."[] = R\"lua("..item.text.."---------- )lua\";"
  end)
end

local function recordTexts()
  local typeStrings = {}
  for typeString in pairs(C.records) do typeStrings[#typeStrings + 1] = typeString end
  table.sort(typeStrings)
  return T.each(typeStrings, "\n", function(typeString)
    return "const wrap::Type& "..C.records[typeString].." = wrap::type("..T.quote(typeString)..");"
  end)
end

return function(package)
  local collected = collectedTypes(package)
  local wrappers = collect(package.items, "\n\n", wrapperText)
  local chunks = chunkTexts(package)
  local collectors = T.each(package.types, "\n", function(typeString)
    local type = collected[typeString]
    return type and "int "..collectorName(typeString).."(lua_State* L) { return wrap::collect<"..type..">(L, "..
      record("const "..type).."); }"
  end)
  return T.fill(FILE, {
    name = package.name,
    includes = table.concat(package.includes, "\n"),
    types = recordTexts(),
    collectors = collectors,
    bases = collect(package.items, "\n", function(item) return item.tag == "class" and baseCheck(item) or nil end),
    checks = completenessChecks(package),
    wrappers = wrappers,
    chunks = chunks,
    typeEntries = T.each(package.types, "\n", function(typeString)
      local type = collected[typeString]
      local collector = type and collectorName(typeString)..", std::is_trivially_destructible_v<"..type..">" or "nullptr, false"
      return "{"..T.quote(typeString)..", "..collector.."},"
    end),
    members = members(package.items),
  })
end
