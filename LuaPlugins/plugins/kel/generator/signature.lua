-- Functions as scripts see them, in one line: `const name(T1, T2=default) -> R1, R2`.
local C = load "cpp_types"
local S = {}

local NAMES = {number = "number", bool = "bool", string = "string", address = "userdata", array = "numberarray"}

function S.type(t)
  if t.kind == "void" then return nil end
  return NAMES[t.kind] or t.typeString
end

function S.results(f)
  local results = {}
  if f.destructor then return results end
  results[1] = S.type(f.result)
  for _, argument in ipairs(f.args) do
    if argument.inout then results[#results + 1] = S.type(argument) end
  end
  return results
end

-- a null object is nil to scripts
local function default(argument)
  if not argument.default then return "" end
  return "="..(not NAMES[argument.kind] and C.isNull(argument.default) and "nil" or argument.default)
end

function S.line(f)
  local args = {}
  for i, argument in ipairs(f.args) do args[i] = S.type(argument)..default(argument) end
  local results = S.results(f)
  local prefix = f.static and f.class and "static " or f.self == "const" and "const " or ""
  return prefix..f.name.."("..table.concat(args, ", ")..")"..(#results > 0 and " -> "..table.concat(results, ", ") or "")
end

return S
