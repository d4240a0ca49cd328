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

local function objectType(t) return (t.const and "const " or "")..t.cpp end
-- an object by value is read through the type that its guard accepts
local function readType(t) return t.kind == "value" and not t.const and "const "..t.cpp or objectType(t) end

function C.guard(t, n)
  local form = (t.default and "opt" or "is")..GUARDS[t.kind]
  return "wrap::"..form.."(L, "..n..(t.typeString and ", "..record(t.typeString) or "")..", &e)"
end

-- The whole chain of a function; notes each argument's stack index in it. The lowest overload tests from left to right,
-- as its failure is the one that is reported; the others begin with the number of arguments, the cheapest test.
function C.guards(f)
  local list, last, n = {}, {}, 1
  if f.self == "class" then list[1] = "wrap::isClass(L, "..record(f.class.type)..", &e)"
  elseif f.self ~= "none" then
    list[1] = "wrap::isSelf(L, "..record((f.self == "const" and "const " or "")..f.class.type)..", &e)"
  end
  if f.self ~= "none" then n = 2 end
  for _, argument in ipairs(f.args) do
    argument.n = n
    if argument.kind == "array" then
      list[#list + 1] = "wrap::isTable(L, "..n..", &e)"
      last[#last + 1] = "wrap::isNumberArray(L, "..n..", "..argument.dim..", &e)"
    else list[#list + 1] = C.guard(argument, n) end
    n = n + 1
  end
  local isEnd = "wrap::isEnd(L, "..n..", &e)"
  if f.number == 0 then list[#list + 1] = isEnd
  else table.insert(list, f.self == "class" and 2 or 1, isEnd) end
  for _, guard in ipairs(last) do list[#list + 1] = guard end
  return table.concat(list, " && ")
end

function C.isNull(default) return default == "0" or default == "NULL" or default == "nullptr" end

local function readObject(t, n, functionName)
  if not t.default then return "wrap::reference<"..readType(t)..">(L, "..n..")" end
  if C.isNull(t.default) then
    return "wrap::reference<"..readType(t)..">(L, "..n..", "..record(t.typeString)..", "..T.quote(functionName)..")"
  end
  local given = "wrap::reference<"..readType(t)..">(L, "..n..")"
  return "wrap::isGiven(L, "..n..") ? "..given.." : static_cast<const "..t.cpp.."&>("..t.default..")"
end

function C.read(t, n, functionName)
  local absent = t.default and ", "..t.default or ""
  if t.kind == "number" then
    if t.default then absent = ", static_cast<"..t.cpp..">("..t.default..")" end
    return "wrap::number<"..t.cpp..">(L, "..n..absent..")"
  elseif t.kind == "bool" then return "wrap::flag(L, "..n..absent..")"
  elseif t.kind == "string" then return "wrap::"..(t.cstring and not t.inout and "text" or "string").."(L, "..n..absent..")"
  elseif t.kind == "address" then return "wrap::address(L, "..n..")"
  elseif t.kind == "array" then return "wrap::NumberArray<"..t.cpp..", "..t.dim..">(L, "..n..").values"
  elseif t.kind == "pointer" then
    return "wrap::pointer<"..objectType(t)..">(L, "..n..(C.isNull(t.default) and "" or absent)..")"
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
