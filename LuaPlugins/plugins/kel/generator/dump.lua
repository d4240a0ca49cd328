-- The model of a package as a Lua file that returns it, for checks over all packages.
local SKIPPED = {class = true, overloads = true, body = true, typeSet = true, opaque = true}

local function write(value, indent)
  if type(value) == "string" then return string.format("%q", value) end
  if type(value) ~= "table" then return tostring(value) end
  local keys, lines, inner = {}, {}, indent.." "
  for key in pairs(value) do
    if type(key) == "string" and not SKIPPED[key] then keys[#keys + 1] = key end
  end
  table.sort(keys)
  for _, key in ipairs(keys) do lines[#lines + 1] = inner..'["'..key..'"] = '..write(value[key], inner) end
  for _, item in ipairs(value) do lines[#lines + 1] = inner..write(item, inner) end
  if #lines == 0 then return "{}" end
  return "{\n"..table.concat(lines, ",\n").."\n"..indent.."}"
end

return function(package) return "return "..write(package, "").."\n" end
