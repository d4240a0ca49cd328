-- LuaLS definitions of a package, for completion and checks in an editor.
--
-- Three classes stand for a bound class: `const.T` has what a const view can do, `T : const.T` adds the rest, and
-- `T.table` is the class table with constructors, static functions and constants.
local T = load "template"

local RESERVED = {}
local WORDS = "and break do else elseif end false for function if in local nil not or repeat return then true until while self"
for word in string.gmatch(WORDS, "%a+") do
  RESERVED[word] = true
end
local OPERATORS = {[".add"] = "add", [".sub"] = "sub", [".mul"] = "mul", [".div"] = "div"}
local SYNTAX = {[".eq"] = true, [".lt"] = true, [".seti"] = true} -- plain Lua syntax, which needs no annotation

local function dotted(type) return (string.gsub(string.gsub(string.gsub(type, "::", "."), "[<>, %*]", "_"), "_+$", "")) end
local function className(typeString)
  local plain = string.match(typeString, "^const (.*)")
  return plain and "const."..dotted(plain) or dotted(typeString)
end

local BASIC = {number = "number", bool = "boolean", string = "string", address = "userdata", array = "number[]"}
local function parameterType(t)
  if t.kind == "string" then return "string?" end
  if t.kind == "pointer" then return className(t.typeString).."?" end
  return BASIC[t.kind] or className(t.typeString)
end
local function resultType(t)
  if t.kind == "number" and t.cpp ~= "double" and t.cpp ~= "float" then return "integer" end
  if t.kind == "pointer" then return className(t.typeString).."?" end
  return BASIC[t.kind] or className(t.typeString)
end

local function parameterNames(f)
  local names = {}
  for i, argument in ipairs(f.args) do names[i] = RESERVED[argument.name] and argument.name.."_" or argument.name end
  return names
end

local function results(f)
  local list = {}
  if f.constructor then list[1] = {type = dotted(f.class.type)}
  elseif f.result.kind ~= "void" then list[1] = {type = resultType(f.result)} end
  for i, argument in ipairs(f.args) do
    if argument.inout then
      list[#list + 1] = {type = resultType(argument), name = parameterNames(f)[i].." # the argument, after the call"}
    end
  end
  return list
end

local function functionType(f, self, single)
  local names, parameters, types = parameterNames(f), {}, {}
  if self then parameters[1] = "self: "..self end
  for i, argument in ipairs(f.args) do
    parameters[#parameters + 1] = names[i]..(argument.default and "?" or "")..": "..parameterType(argument)
  end
  for i, result in ipairs(results(f)) do
    if i == 1 or not single then types[i] = result.type end
  end
  return "fun("..table.concat(parameters, ", ")..")"..(#types > 0 and ": "..table.concat(types, ", ") or "")
end

local function comment(doc) return T.each(doc or {}, "\n", function(line) return "--- "..line end) end

-- one Lua function with its overloads; the last registered is tried first and stands in front
local function functionStub(overloads, path, self, name)
  local first = overloads[#overloads]
  local parts, names = {comment(first.doc)}, parameterNames(first)
  for i = #overloads - 1, 1, -1 do
    local type = functionType(overloads[i], self)
    if type ~= functionType(first, self) then
      parts[#parts + 1] = comment(overloads[i].doc)
      parts[#parts + 1] = "---@overload "..type
    end
  end
  for i, argument in ipairs(first.args) do
    local default = argument.default and " # default "..argument.default or ""
    parts[#parts + 1] = "---@param "..names[i]..(argument.default and "?" or "").." "..parameterType(argument)..default
  end
  for _, result in ipairs(results(first)) do
    parts[#parts + 1] = "---@return "..result.type..(result.name and " "..result.name or "")
  end
  parts[#parts + 1] = "function "..path..(self and ":" or ".")..(name or first.name).."("..table.concat(names, ", ")..") end\n"
  return T.lines(parts)
end

-- functions of a kind by name, in order of their first declaration
local function grouped(items, accept)
  local groups, byName = {}, {}
  for _, f in ipairs(items) do
    if f.tag == "function" and accept(f) then
      if not byName[f.name] then
        byName[f.name] = {}
        groups[#groups + 1] = byName[f.name]
      end
      table.insert(byName[f.name], f)
    end
  end
  return groups
end

local function isMethod(f) return f.self ~= "class" and f.self ~= "none" and string.sub(f.name, 1, 1) ~= "." end

local function operatorField(f, type)
  local operator = OPERATORS[f.name]
  if operator and f.args[1] then
    return "---@operator "..operator.."("..parameterType(f.args[1]).."): "..resultType(f.result)
  end
  if f.name == ".sub" then return "---@operator unm: "..resultType(f.result) end
  if f.name == ".geti" then return "---@field [integer] "..resultType(f.result) end
  if not SYNTAX[f.name] then return "---@field [\""..f.name.."\"] "..functionType(f, "const."..type) end
end

-- a const overload takes every call that it fits, so a plain one with the same arguments is never reached
local function reached(items, group)
  local const = {}
  local function arguments(f) return (string.gsub(functionType(f), "%):.*", ")")) end
  for _, f in ipairs(items) do
    if f.tag == "function" and f.self == "const" and f.name == group[1].name then const[arguments(f)] = f.number end
  end
  local left = {}
  for _, f in ipairs(group) do
    if (const[arguments(f)] or -1) < f.number then left[#left + 1] = f end
  end
  return left
end

local classStub
local function classTable(c, path)
  local name, parts = dotted(c.type)..".table", {}
  local constructors = grouped(c.items, function(f) return f.constructor end)[1] or {}
  parts[1] = "---@class "..name..(c.base ~= "" and not string.find(c.base, " ") and ": "..dotted(c.base)..".table" or "")
  for i = #constructors, 1, -1 do
    parts[#parts + 1] = comment(constructors[i].doc)
    parts[#parts + 1] = "---@overload "..functionType(constructors[i], nil, true)
  end
  for _, item in ipairs(c.items) do
    if item.tag == "enum" then
      for _, e in ipairs(item.items) do parts[#parts + 1] = "---@field "..e.name.." integer # "..e.value end
    elseif item.tag == "variable" and item.static then
      parts[#parts + 1] = "---@field "..item.name.." "..resultType(item.type)
    end
  end
  parts[#parts + 1] = path.." = {}\n"
  if #constructors > 0 then
    parts[#parts + 1] = functionStub(constructors, path, name)
    parts[#parts + 1] = functionStub(constructors, path, name, "new_local")
  end
  for _, group in ipairs(grouped(c.items, function(f) return f.static end)) do
    parts[#parts + 1] = functionStub(group, path, name)
  end
  for _, item in ipairs(c.items) do
    if item.tag == "class" then parts[#parts + 1] = classStub(item, path.."."..item.name) end
  end
  return T.lines(parts)
end

function classStub(c, path)
  local type = dotted(c.type)
  local base = c.base ~= "" and not string.find(c.base, " ") and dotted(c.base) or nil
  local parts = {"do", comment(c.doc), "---@class const."..type..(base and ": const."..base or "")}
  for _, item in ipairs(c.items) do
    if item.tag == "function" and string.sub(item.name, 1, 1) == "." then parts[#parts + 1] = operatorField(item, type) or ""
    elseif item.tag == "variable" and not item.static then
      local variableType = item.inherits and dotted(item.inherits) or resultType(item.type)
      local doc = table.concat(item.doc or {}, " ")..(item.readonly and " (read only)" or "")
      parts[#parts + 1] = "---@field "..item.name.." "..variableType..(doc ~= "" and " # "..doc or "")
    end
  end
  parts[#parts + 1] = "local const = {}\n"
  for _, group in ipairs(grouped(c.items, function(f) return isMethod(f) and f.self == "const" end)) do
    parts[#parts + 1] = functionStub(group, "const", "const."..type)
  end
  parts[#parts + 1] = "---@class "..type..": const."..type..(base and ", "..base or "")
  parts[#parts + 1] = "local plain = {}\n"
  for _, group in ipairs(grouped(c.items, function(f) return isMethod(f) and f.self == "plain" end)) do
    local left = reached(c.items, group)
    if #left > 0 then parts[#parts + 1] = functionStub(left, "plain", type) end
  end
  parts[#parts + 1] = "end"
  parts[#parts + 1] = classTable(c, path)
  return T.lines(parts)
end

local function body(items, path)
  local parts = {}
  for _, item in ipairs(items) do
    local full = path and item.name and path.."."..item.name or item.name
    if item.tag == "module" then parts[#parts + 1] = full.." = "..full.." or {}\n\n"..body(item.items, full)
    elseif item.tag == "class" then parts[#parts + 1] = classStub(item, full)
    elseif item.tag == "variable" then parts[#parts + 1] = "---@type "..resultType(item.type).."\n"..full.." = nil\n"
    elseif item.tag == "enum" then
      for _, e in ipairs(item.items) do parts[#parts + 1] = (path and path.."." or "")..e.name.." = "..e.value end
    elseif item.tag == "chunk" then
      for name, parameters in string.gmatch(item.text, "function ([%w_%.:]+)%s*(%b())") do
        parts[#parts + 1] = "function "..name..parameters.." end\n"
      end
    end
  end
  for _, group in ipairs(grouped(items, function(f) return f.self == "none" end)) do
    parts[#parts + 1] = functionStub(group, path or "_G")
  end
  return T.lines(parts)
end

return function(package) return "---@meta "..package.name.."\n\n"..body(package.items, nil).."\n" end
