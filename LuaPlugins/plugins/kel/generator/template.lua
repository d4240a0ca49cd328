-- Text templates. `${name}` stands for values.name. A value with several lines is indented like its place, and a
-- line that holds nothing but empty values disappears.
local T = {}

function T.fill(template, values)
  local lines = {}
  for line in string.gmatch(template.."\n", "([^\n]*)\n") do
    local indent = string.match(line, "^%s*")
    local text = string.gsub(line, "%${(%w+)}", function(name)
      local value = values[name]
      if value == nil then error("template: no value for "..name..": "..template) end
      return (string.gsub(tostring(value), "\n", "\n"..indent))
    end)
    if line == text or string.find(text, "%S") then lines[#lines + 1] = text end
  end
  return table.concat(lines, "\n")
end

-- the results of f for all items that have one, joined
function T.each(items, separator, f)
  local parts = {}
  for i, item in ipairs(items) do
    local part = f(item, i)
    if part and part ~= "" then parts[#parts + 1] = part end
  end
  return table.concat(parts, separator)
end

-- the lines that are not empty, joined
function T.lines(parts) return T.each(parts, "\n", function(part) return part end) end

function T.quote(text) return '"'..string.gsub(string.gsub(text, "[\\\"]", "\\%0"), "\n", "\\n")..'"' end

return T
