-- What scripts can call: every wrapper in the live tables, with the overloads that its error report lists.
local avoid = require "avoid"

-- `names` has the key of every function, `entries` the entry of each that is called.
local surface = { functions = {}, entries = {}, classes = {}, byType = {}, names = {} }

local STANDARD = {}
for name in ([[_G arg bit coroutine debug ffi io jit math os package string table tolua]]):gmatch("%S+") do
  STANDARD[name] = true
end

local function sortedKeys(t)
  local keys = {}
  for key in next, t do
    if type(key) == "string" then keys[#keys + 1] = key end
  end
  table.sort(keys)
  return keys
end

local function isC(f) return debug.getinfo(f, "S").what == "C" end

-- "number, bool=false" -> {{type = "number"}, {type = "bool", optional = true}}
local function parseArguments(text)
  local arguments, depth, from = {}, 0, 1
  local function enter(to)
    local argument = text:sub(from, to):match("^%s*(.-)%s*$")
    from = to + 2
    if argument == "" then return end
    local typeName, default = argument:match("^(.-)(=.*)$")
    arguments[#arguments + 1] = { type = typeName or argument, optional = default ~= nil }
  end
  for i = 1, #text do
    local c = text:sub(i, i)
    depth = depth + (c == "<" and 1 or c == ">" and -1 or 0)
    if c == "," and depth == 0 then enter(i - 1) end
  end
  enter(#text)
  return arguments
end

-- No wrapper takes threads, so this call fails in the guard, and says which overloads there are.
local function readOverloads(f)
  local thread = coroutine.create(function() end)
  local threads = {}
  for i = 1, 40 do threads[i] = thread end
  local _, report = pcall(f, unpack(threads))
  local overloads = {}
  local list = type(report) == "string" and report:match("\n     signatures:\n(.*)") or ""
  for line in list:gmatch("[^\n]+") do
    local head, arguments = line:match("^%s+(.-)%((.*)%)")
    if head then
      overloads[#overloads + 1] = { static = head:match("^static ") ~= nil, arguments = parseArguments(arguments) }
    end
  end
  return overloads
end

local CONSTRUCTORS = { new = true, new_local = true, [".call"] = true }

local function enterFunction(path, key, f, class)
  surface.names[f] = key
  if avoid.never[key] then return end
  local entry = {
    name = path .. key, key = key, call = f, class = class,
    constructor = class and CONSTRUCTORS[key] or false,
    event = key:match("^__") ~= nil,
    overloads = key:match("^__") and {} or readOverloads(f),
  }
  surface.functions[#surface.functions + 1] = entry
  surface.entries[f] = entry
end

local function enterClass(path, t, typeName)
  local class = { name = path, type = typeName, table = t, keys = sortedKeys(t), original = {} }
  for key, value in next, t do class.original[key] = value end
  class.variables = sortedKeys(rawget(t, ".get") or {})
  surface.classes[#surface.classes + 1] = class
  surface.byType[typeName] = class
  return class
end

local seen = {}

local function walk(path, t)
  if seen[t] then return end
  seen[t] = true
  local typeName = tolua.type(t):match("^class (.*)")
  local class = typeName and enterClass(path:sub(1, -2), t, typeName)
  for _, key in ipairs(sortedKeys(t)) do
    local value = rawget(t, key)
    if type(value) == "function" and isC(value) then
      enterFunction(path, key, value, class)
    elseif type(value) == "table" and not avoid.own[key] and not STANDARD[key] then
      walk(path .. key .. ".", value)
    end
  end
end

local BASE = {}
for name in ([[assert collectgarbage dofile error gcinfo getfenv getmetatable ipairs load loadfile loadstring module
               newproxy next pairs pcall print rawequal rawget rawset require select setfenv setmetatable tonumber
               tostring type unpack xpcall]]):gmatch("%S+") do
  BASE[name] = true
end

for _, name in ipairs(sortedKeys(_G)) do
  local value = _G[name]
  if type(value) == "table" and not STANDARD[name] then
    walk(name .. ".", value)
  elseif type(value) == "function" and isC(value) and not BASE[name] then
    enterFunction("", name, value, nil)
  end
end

for _, class in ipairs(surface.classes) do
  local base = debug.getmetatable(class.table)
  class.base = base and surface.byType[tolua.type(base):gsub("^class ", "")]
end

--- Whether an object of type `given` serves as `wanted`.
function surface.accepts(wanted, given)
  local constWanted, constGiven = wanted:match("^const (.*)"), given:match("^const (.*)")
  if constGiven and not constWanted then return false end
  local class = surface.byType[constGiven or given]
  wanted = constWanted or wanted
  if (constGiven or given) == wanted then return true end
  while class do
    if class.type == wanted then return true end
    class = class.base
  end
  return false
end

--- Makes all class tables what they were at the start.
function surface.restore()
  for _, class in ipairs(surface.classes) do
    for key in next, class.table do
      if class.original[key] == nil then rawset(class.table, key, nil) end
    end
    for key, value in next, class.original do rawset(class.table, key, value) end
  end
end

return surface
