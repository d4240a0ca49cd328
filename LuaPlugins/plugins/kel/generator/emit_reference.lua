-- The API reference of a package in Markdown.
local T, signature = load "template", load "signature"

local function sentence(doc) return doc and #doc > 0 and table.concat(doc, " ") or "" end
local function entry(code, doc) return "- `"..code.."`"..(sentence(doc) ~= "" and "  \n  "..sentence(doc) or "") end

local items
local function section(depth, title, item, text)
  local parts = {string.rep("#", depth).." "..title}
  if sentence(item.doc) ~= "" then parts[#parts + 1] = sentence(item.doc) end
  if text ~= "" then parts[#parts + 1] = (string.gsub(text, "^\n+", "")) end
  return "\n"..table.concat(parts, "\n\n")
end

local function class(item, depth)
  local title = "Class `"..item.type.."`"
  if item.base ~= "" then title = title.." : `"..item.base.."`" end
  return section(depth, title, item, items(item.items, depth + 1))
end

local function constants(enum)
  local heading = enum.name and "- enum `"..enum.name.."`" or "- constants"
  if sentence(enum.doc) ~= "" then heading = heading..": "..sentence(enum.doc) end
  return heading.."\n"..T.each(enum.items, "\n", function(e)
    return "  - `"..e.name.."` = "..e.value..(sentence(e.doc) ~= "" and ": "..sentence(e.doc) or "")
  end)
end

-- members first, then the classes and modules inside, so that every member stands under its own heading
function items(list, depth)
  local parts = {}
  for _, item in ipairs(list) do
    if item.tag == "function" then parts[#parts + 1] = entry(signature.line(item), item.doc)
    elseif item.tag == "variable" then
      local type = item.inherits or signature.type(item.type)
      parts[#parts + 1] = entry(item.name..": "..type..(item.readonly and " (read only)" or ""), item.doc)
    elseif item.tag == "enum" then parts[#parts + 1] = constants(item)
    elseif item.tag == "chunk" then
      for name in string.gmatch(item.text, "function ([%w_%.:]+%s*%b())") do parts[#parts + 1] = entry(name) end
    end
  end
  for _, item in ipairs(list) do
    if item.tag == "class" then parts[#parts + 1] = class(item, depth)
    elseif item.tag == "module" then
      parts[#parts + 1] = section(depth, "Module `"..item.name.."`", item, items(item.items, depth + 1))
    end
  end
  return table.concat(parts, "\n")
end

return function(package) return "# Package "..package.name.."\n"..items(package.items, 2).."\n" end
