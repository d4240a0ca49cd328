-- How a call finds its overload. The order of the overloads decides: the highest one that takes the arguments. An entry
-- function starts at the highest one that takes their number and, where the first argument is an object, may take an
-- object there; each hands over to the one below. Where three or more
-- share a number of arguments, a dispatcher remembers which one won.
local T, C = load "template", load "cpp_types"
local O = {}

function O.isSet(f) return #f.overloads > 1 end
function O.isLast(f) return f == f.overloads[#f.overloads] end
-- what is registered for all overloads of a name
function O.entryName(f)
  return (f.constructor or O.isSet(f)) and f.cname or O.wrapperName(f)
end
-- what the wrappers of an overload set get beside the state, and hand over
function O.parameters(f) return (O.isSet(f) and ", int top" or "")..(f.constructor and ", bool local" or "") end
function O.arguments(f) return (O.isSet(f) and ", top" or "")..(f.constructor and ", local" or "") end
function O.wrapperName(f, number) return f.cname..string.format("%02d", number or f.number) end

-- the least and the largest number of values on the stack that an overload takes
local function counts(f)
  local before, least = f.self == "none" and 0 or 1, 0
  for i, argument in ipairs(f.args) do if not argument.default then least = i end end
  return before + least, before + #f.args
end

-- Those of constructors and static functions stay in a chain, as what they make costs more.
function O.isDispatched(f)
  if f.constructor or f.destructor or f.self == "class" then return false end
  local numTakers = {}
  for _, overload in ipairs(f.overloads) do
    local least, most = counts(overload)
    for n = least, most do
      numTakers[n] = (numTakers[n] or 0) + 1
      if numTakers[n] >= 3 then return true end
    end
  end
  return false
end

local DISPATCHER = [[
constexpr wrap::Overload ${all}_overloads[] = {${overloads}};
wrap::Overloads ${all}_dispatcher{${all}_overloads, ${first}};
int ${all}(lua_State* L) { return ${all}_dispatcher.call(L); }]]

local function dispatcher(f)
  local names, sameSelf = {}, f.self ~= "none"
  for i = #f.overloads, 1, -1 do
    names[#names + 1] = O.wrapperName(f.overloads[i])
    sameSelf = sameSelf and f.overloads[i].self == f.self
  end
  -- self tells overloads apart only where some take a const one
  return T.fill(DISPATCHER, {all = f.cname, overloads = table.concat(names, ", "), first = sameSelf and 2 or 1})
end

local ENTRY = [[
int ${all}(lua_State* L${parameter})
{
  ${class}
  const int top = lua_gettop(L);
  switch (top) {
  ${cases}
  default:
    return ${lowest};
  }
}]]

local CONSTRUCTORS = [[
int ${all}(lua_State* L) { return ${any}(L, false); }
int ${all}_local(lua_State* L) { return ${any}(L, true); }]]

local PLAIN = {number = true, bool = true, string = true, array = true}

-- the highest overload for each number of values; only those that may take an object as their first argument if asked
local function highestByCount(f, onlyObjects)
  local highest, largest = {}, 0
  for i = 1, #f.overloads do
    local overload = f.overloads[i]
    local least, most = counts(overload)
    local first = overload.args[1]
    if not (onlyObjects and first and PLAIN[first.kind]) then
      for n = least, most do highest[n] = overload end
    end
    largest = math.max(largest, most)
  end
  return highest, largest
end

local function entry(f)
  local any = f.constructor and "_any" or ""
  local function call(overload) return O.wrapperName(overload)..any.."(L"..O.arguments(f)..")" end
  local highest, largest = highestByCount(f)
  local forObjects = highestByCount(f, true)
  local first = f.self == "none" and 1 or 2
  local cases = {}
  for n = 0, largest do
    local taker, objectTaker = highest[n], forObjects[n]
    if taker and n >= first and objectTaker and objectTaker ~= taker then
      cases[#cases + 1] = "case "..n..":\n  return lua_type(L, "..first..") == LUA_TUSERDATA ? "..call(objectTaker).." : "..
        call(taker)..";"
    elseif taker and taker.number > 0 then
      cases[#cases + 1] = "case "..n..":\n  return "..call(taker)..";"
    end
  end
  return T.fill(ENTRY, {
    all = f.cname..any, parameter = f.constructor and ", bool local" or "",
    class = f.self == "class" and "wrap::isClass(L, "..C.record(f.class.type)..");" or "",
    cases = table.concat(cases, "\n"), lowest = call(f.overloads[1]),
  })
end

-- behind the last overload: the function or functions that are registered for the name
function O.entry(f)
  if not O.isLast(f) then return "" end
  local parts = {}
  if O.isSet(f) then parts[1] = O.isDispatched(f) and dispatcher(f) or entry(f) end
  if f.constructor then
    local any = (O.isSet(f) and f.cname or O.wrapperName(f)).."_any"
    parts[#parts + 1] = T.fill(CONSTRUCTORS, {all = f.cname, any = any})
  end
  if #parts == 0 then return "" end
  return "\n\n"..table.concat(parts, "\n")
end

return O
