-- Declared types as C++: the guards that test them, the readers that fetch them, how they are written.
local T = load "template"
local C = {}

function C.identifier(text) return (string.gsub(text, "[<>:, %*%.]", "_")) end
-- type string -> name of its record, for those that the source mentions
C.records = {}
local function record(typeString)
  C.records[typeString] = "type_"..C.identifier(typeString)
  return C.records[typeString]
end
C.record = record


local GUARDS = {number = "Number", bool = "Bool", string = "String", address = "Address", pointer = "Pointer",
                reference = "Reference", value = "Reference"}

local OBJECTS = {pointer = true, reference = true, value = true}

local function objectType(t) return (t.const and "const " or "")..t.cpp end
-- an object by value is read through the type that its guard accepts
local function readType(t) return t.kind == "value" and not t.const and "const "..t.cpp or objectType(t) end

-- Guards fetch objects and required numbers and bools into a local, as that spares a second look at the stack; texts
-- are read behind the guards, since reading a number as a text changes the stack.
local FETCHED = {number = "double", bool = "bool"}
local function fetchedType(t)
  if OBJECTS[t.kind] then return readType(t).."*" end
  return not t.default and not t.inout and FETCHED[t.kind] or nil
end

-- the local that a guard fetches the value at a position into
function C.fetched(t, n)
  local type = fetchedType(t)
  return type and type.." a"..n.."{};"
end

function C.guard(t, n)
  local form = (t.default and "opt" or "is")..GUARDS[t.kind]
  local fetched = fetchedType(t) and ", a"..n or ""
  return "wrap::"..form.."(L, "..n..fetched..(t.typeString and ", "..record(t.typeString) or "")..", &e)"
end

local CHEAP = {number = true, bool = true, string = true}

-- The whole chain of a function; notes each argument's stack index in it. The lowest overload tests from left to right,
-- as its failure is the one that is reported; the others begin with what costs least, the number of arguments and their
-- plain types. The entry function of several overloads looks after the class table of static ones.
function C.guards(f)
  local objects, plain, arrays = {}, {}, {}
  local isLowest = f.number == 0
  if f.self == "class" and #f.overloads == 1 then objects[1] = "wrap::isClass(L, "..record(f.class.type)..")"
  elseif f.self == "plain" or f.self == "const" then
    objects[1] = "wrap::isSelf(L, self, "..record((f.self == "const" and "const " or "")..f.class.type)..", &e)"
  end
  local n = f.self == "none" and 1 or 2
  for _, argument in ipairs(f.args) do
    argument.n = n
    local list = not isLowest and CHEAP[argument.kind] and plain or objects
    if argument.kind == "array" then
      list[#list + 1] = "wrap::isTable(L, "..n..", &e)"
      arrays[#arrays + 1] = "wrap::isNumberArray(L, "..n..", "..argument.dim..", &e)"
    else list[#list + 1] = C.guard(argument, n) end
    n = n + 1
  end
  local isEnd = {"wrap::isEnd("..(#f.overloads > 1 and "top" or "lua_gettop(L)")..", "..n..", &e)"}
  local all = {}
  for _, list in ipairs(isLowest and {objects, isEnd, arrays} or {isEnd, plain, objects, arrays}) do
    for _, guard in ipairs(list) do all[#all + 1] = guard end
  end
  return table.concat(all, " && ")
end

function C.isNull(default) return default == "0" or default == "NULL" or default == "nullptr" end

local function readObject(t, n, functionName)
  local a = "a"..n
  if t.kind == "pointer" then
    if not t.default or C.isNull(t.default) then return a end
    return "wrap::isGiven(L, "..n..") ? "..a.." : "..t.default
  end
  if not t.default then return "*"..a end
  if C.isNull(t.default) then
    return "wrap::required(L, "..a..", "..n..", "..record(t.typeString)..", "..T.quote(functionName)..")"
  end
  return a.." ? *"..a.." : static_cast<const "..t.cpp.."&>("..t.default..")"
end

function C.read(t, n, functionName)
  local absent = t.default and ", "..t.default or ""
  if t.kind == "number" then
    if fetchedType(t) then return t.cpp == "double" and "a"..n or "wrap::toNumber<"..t.cpp..">(a"..n..")" end
    if t.default then absent = ", static_cast<"..t.cpp..">("..t.default..")" end
    return "wrap::number<"..t.cpp..">(L, "..n..absent..")"
  elseif t.kind == "bool" then return fetchedType(t) and "a"..n or "wrap::flag(L, "..n..absent..")"
  elseif t.kind == "string" then return "wrap::"..(t.cstring and not t.inout and "text" or "string").."(L, "..n..absent..")"
  elseif t.kind == "address" then return "wrap::address(L, "..n..")"
  elseif t.kind == "array" then return "wrap::NumberArray<"..t.cpp..", "..t.dim..">(L, "..n..").values"
  end
  return readObject(t, n, functionName)
end

-- as a parameter or result of a body
function C.declared(t)
  if t.kind == "void" then return "void" end
  local cpp = objectType(t)
  if t.kind == "string" and t.cstring and not t.inout then return "const char*" end
  if t.kind == "address" then return "void*" end
  if t.kind == "array" then return "const "..t.cpp.."*" end
  if t.kind == "pointer" then return cpp.."*" end
  if t.kind == "reference" then return cpp.."&" end
  if t.inout then return t.cpp.."&" end
  return t.kind == "value" and cpp or t.cpp
end

return C
