-- What tolua++'s parser lacks: errors that end it, doc comments, attributes, bodies, enumerator values.
--
-- Doc comments, bodies and Lua chunks leave the code before tolua++ strips comments; marks stay in their place:
-- \14n\14 for a doc line, \15n\15 for a body, \16n\16 for a chunk.
local ATTRIBUTES = {collected = true, printed = true, bounded = true}
local docs, bodies = {}, {}
local pending = {doc = {}, attributes = {}}

function fail(message)
  io.stderr:write(flags.f, ": ", (string.gsub(message, "[\14\15\16]%d*", "")), "\n")
  os.exit(1)
end

-- tolua++ prints an error and exits with 0, and warns of what it drops
function tolua_error(message)
  local near = string.gsub(string.sub(_curr_code or "", 1, 120), "%s+", " ")
  fail((string.gsub(tostring(message), "^%d*:?%s*#", "")).."\n  near: "..near)
end
function warning(message) tolua_error("not supported: "..message) end

-- tolua++ would make overloads of defaults that look like objects
function param_object() return false end

-- an enum of another package: a number in Lua, its own type in C++
function enum(name)
  global_typedefs[name] = {mod = "", type = "int", ftype = "int"}
  global_enums[name] = true
  append_global_type(name)
  foreign_enums[#foreign_enums + 1] = name
end
foreign_enums = {}

local function takePending(item)
  item.doc, item.attributes, item.body = pending.doc, pending.attributes, pending.body
  pending = {doc = {}, attributes = {}}
end

-- where the braced text that starts at i ends, past strings, characters and comments
local function bodyEnd(code, i)
  local depth = 0
  while i <= #code do
    local c = string.sub(code, i, i)
    if c == "{" then depth = depth + 1
    elseif c == "}" then
      depth = depth - 1
      if depth == 0 then return i end
    elseif c == '"' or c == "'" then
      local j = i + 1
      while j <= #code and string.sub(code, j, j) ~= c do j = j + (string.sub(code, j, j) == "\\" and 2 or 1) end
      i = j
    elseif string.find(code, "^//", i) then i = string.find(code, "\n", i, true)
    elseif string.find(code, "^/%*", i) then _, i = string.find(code, "*/", i, true) end
    i = i + 1
  end
  fail("a body has no end: "..string.sub(code, -80))
end

local function liftBodies(code)
  local parts, at = {}, 1
  while true do
    local _, open = string.find(code, "%)%s*c?o?n?s?t?%s*{", at)
    if not open then break end
    local close = bodyEnd(code, open)
    bodies[#bodies + 1] = string.sub(code, open, close)
    parts[#parts + 1] = string.sub(code, at, open - 1).."\15"..#bodies.."\15;"
    at = close + 1
  end
  parts[#parts + 1] = string.sub(code, at)
  return table.concat(parts)
end

local function refuse(code)
  for _, word in ipairs {"private", "protected"} do
    if string.find(code, "%f[%w_]"..word.."%s*:[^:]") then fail(word.." members do not belong into a package") end
  end
  if string.find(code, "///<", 1, true) then fail("write documentation in front: ///< is not read") end
end

function preprocess_hook(package)
  local chunks = {}
  local code = string.gsub(package.code, "\n%s*%$%[.-\n%s*%$%]", function(chunk)
    chunks[#chunks + 1] = chunk
    return "\n\16"..#chunks.."\16"
  end)
  refuse(code)
  code = string.gsub(code, "\n[ \t]*///[ \t]*([^\n]*)", function(line)
    docs[#docs + 1] = line
    return "\n\14"..#docs.."\14"
  end)
  code = liftBodies(code)
  package.code = string.gsub(code, "\n\16(%d+)\16", function(n) return chunks[tonumber(n)] end)
end

local function readAttributes(list)
  for word in string.gmatch(list, "[^,%s]+") do
    if not ATTRIBUTES[word] then fail("unknown attribute [["..word.."]]") end
    pending.attributes[word] = true
  end
end

function parser_hook(code)
  local _, stop, n = string.find(code, "^%s*\14(%d+)\14")
  if stop then
    table.insert(pending.doc, docs[tonumber(n)])
    return string.sub(code, stop + 1)
  end
  local _, stop, list = string.find(code, "^%s*%[%[(.-)%]%]")
  if stop then
    readAttributes(list)
    return string.sub(code, stop + 1)
  end
  local _, _, body = string.find(code, "^[^;{}]-\15(%d+)\15")
  if body then
    pending.body = bodies[tonumber(body)]
    return (string.gsub(code, "\15%d+\15", "", 1))
  end
end

local appendToContainer = classContainer.append
function classContainer:append(item)
  appendToContainer(self, item)
  if item.line == nil then takePending(item) end -- verbatim lines have no documentation
end

-- a class may be declared before it is defined: what stands before the definition counts
local parseClass = Class
function Class(name, bases, body)
  local described = {}
  takePending(described)
  parseClass(name, bases, body)
  local class = _global_classes[getnamespace(classContainer.curr)..string.gsub(name, "@.*$", "")]
  if #described.doc > 0 or not class.doc then class.doc = described.doc end
  class.attributes = class.attributes or {}
  for attribute in pairs(described.attributes) do class.attributes[attribute] = true end
end

-- tolua++ drops the enumerators' values
local parseEnumerate = Enumerate
function Enumerate(name, body, variable)
  local values, enumDocs = {}, {}
  for marks, enumerator, value in string.gmatch(body, "([\14%d%s]*)([%a_][%w_@]*)%s*=%s*([^,}\14]+)") do
    local plain = string.gsub(enumerator, "@.*", "")
    values[plain] = string.gsub(value, "%s+$", "")
    local lines = {}
    for n in string.gmatch(marks, "\14(%d+)\14") do lines[#lines + 1] = docs[tonumber(n)] end
    enumDocs[plain] = lines
  end
  local result = parseEnumerate(name, (string.gsub(body, "\14%d+\14", "")), variable)
  local container = classContainer.curr
  container[container.n].values, container[container.n].valueDocs = values, enumDocs
  return result
end

function undocumentedRest() return #pending.doc > 0 end
