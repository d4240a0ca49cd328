-- Turns tolua++'s parsed tree into plain tables, which are all that the emitters read:
--
--   package  {name, items, types = <sorted type strings>, includes, enums, foreignEnums,
--            opaque = <set of type strings>}
--   module   {tag="module", name, items, hasVariables}
--   class    {tag="class", name, type, base, collected, printed, doc, items, abstract}
--   enum     {tag="enum", name, doc, items = {{name, value, doc}}}
--   function {tag="function", name, cname, number, errorName, self = "none|class|plain|const", args, result, doc,
--             constructor, destructor, operator, static, body, call, overloads = <all of that name, in order>}
--   variable {tag="variable", name, errorName, member, static, readonly, inherits, get, set, type, doc}
--   chunk    {tag="chunk", text}
--
-- A type is {kind = "void|number|bool|string|address|pointer|reference|value|array", cpp, typeString, const,
-- inout, default, name, dim, element, enum, cstring}. `class` on functions and variables refers to their class.
local package

local function refuse(where, message) fail(package.name..": "..where..": "..message) end

local function trim(text) return (string.gsub(text or "", "^%s*(.-)%s*$", "%1")) end
local function modifiers(text)
  local rest = string.gsub(text or "", "tolua_%w+", "")
  return trim((string.gsub(rest, "%f[%w]static%f[%W]", "")))
end
local function given(text) return text and text ~= "" and text or nil end

local KINDS = {[""] = "void", number = "number", boolean = "bool", cppstring = "string", string = "string",
               userdata = "address"}

local function classKind(declared) return declared.ptr == "*" and "pointer" or declared.ptr == "&" and "reference" or "value" end

local function makeType(declared, where)
  local raw = string.gsub(declared.type, "^const%s+", "")
  local mods = modifiers(declared.mod)
  local basic = isbasic(raw)
  local t = {
    const = string.find(declared.type, "^const%s") ~= nil,
    cpp = (mods ~= "" and mods.." " or "")..raw,
    name = declared.name, default = given(declared.def), enum = isenum(raw) and true or nil,
  }
  if declared.ret == "*" and not declared.return_userdata or declared.ret == "*" and declared.kind == "var" then
    refuse(where, "pointers to '"..raw.."' are not supported")
  end
  if basic and basic ~= "" and not KINDS[basic] then refuse(where, "type '"..raw.."' is not supported") end
  if basic == "string" and mods ~= "" then refuse(where, "'"..mods.." char*' is no text") end
  if not basic and mods ~= "" then refuse(where, "modifier '"..mods.."' on class type '"..raw.."'") end

  if given(declared.dim) then
    if basic ~= "number" then refuse(where, "only arrays of numbers are supported") end
    t.kind, t.dim, t.element = "array", declared.dim, basic
  elseif basic then
    t.kind = KINDS[basic]
    t.inout = declared.ret == "&" or nil
    if t.kind == "string" then t.cpp, t.cstring = "std::string", basic == "string" or nil end
  else
    if string.find(raw, "%s") and not string.find(raw, "<") then refuse(where, "odd class type '"..raw.."'") end
    if declared.ret and declared.ret ~= "" then refuse(where, "'"..raw..declared.ptr..declared.ret.."' is not supported") end
    t.kind, t.typeString = classKind(declared), (t.const and "const " or "")..raw
  end
  return t
end

local function note(typeString)
  if given(typeString) then package.typeSet[(string.gsub(typeString, "^const ", ""))] = true end
end

local function arguments(parsed, where)
  local args, optional = {}, false
  if parsed.args[1].type == "void" and not given(parsed.args[1].ptr) then return args end
  for _, declared in ipairs(parsed.args) do
    local t = makeType(declared, where)
    if not given(t.name) or string.find(t.name, "^tolua_var") then
      refuse(where, "every parameter needs a name, which is no type's")
    end
    if t.default then optional = true elseif optional then refuse(where, "a required parameter after an optional one") end
    if t.default and (t.inout or t.kind == "array") then
      if t.kind == "array" then refuse(where, "arrays have no defaults") end
    end
    note(t.typeString)
    args[#args + 1] = t
  end
  return args
end

local function callee(f, parsed, class)
  if f.body then return f.cname..string.format("%02d", f.number).."_body" end
  if parsed.cast_operator then return "operator "..(f.result.const and "const " or "")..f.result.cpp end
  if class and f.static then return class.type.."::"..parsed.name end
  return parsed.name
end

local function makeFunction(parsed, class, overloads)
  local where = (class and class.type.."::" or "")..parsed.lname
  local f = {
    tag = "function", name = parsed.lname, errorName = parsed.name, class = class, doc = parsed.doc, body = parsed.body,
    cname = string.sub(parsed.cname, 1, -3), number = tonumber(string.sub(parsed.cname, -2)),
    static = string.find(parsed.mod, "%f[%w]static%f[%W]") ~= nil,
    operator = getmetatable(parsed) == classOperator and not parsed.cast_operator and parsed.kind or nil,
  }
  f.bounded = parsed.attributes and parsed.attributes.bounded
  f.constructor = class and parsed.name == "new" or nil
  f.destructor = class and parsed.name == "delete" or nil
  f.self = not class and "none" or (f.constructor or f.static) and "class" or parsed.const == "const" and "const" or "plain"
  f.args = arguments(parsed, where)
  if f.constructor then f.result = {kind = "pointer", cpp = class.type, typeString = class.type}
  elseif f.destructor or f.operator == "&[]" then f.result = {kind = "void"}
  else
    f.result = makeType(parsed, where)
    f.result.inout = nil
    note(f.result.typeString)
  end
  f.call = callee(f, parsed, class)
  overloads[f.name] = overloads[f.name] or {}
  f.overloads = overloads[f.name]
  table.insert(f.overloads, f)
  return f
end

local function makeVariable(parsed, class)
  local inherits = string.find(parsed.mod, "tolua_inherits") and parsed.type or nil
  local static = string.find(parsed.mod, "%f[%w]static%f[%W]") ~= nil or not class
  local scope = class and class.type.."::" or getnamespace(classContainer.curr)
  local v = {
    tag = "variable", name = parsed.lname, errorName = parsed.name, doc = parsed.doc, class = class,
    static = static, inherits = inherits,
    member = static and scope..parsed.original_name or parsed.original_name,
    get = parsed:cfuncname("tolua_get"), set = parsed:cfuncname("tolua_set"),
    type = makeType(parsed, scope..parsed.original_name),
  }
  v.readonly = inherits ~= nil or string.find(parsed.mod, "tolua_readonly") ~= nil
    or v.type.const and v.type.kind ~= "pointer" or v.type.kind == "address"
  note(v.type.typeString)
  return v
end

local function makeEnum(parsed)
  local scope = getnamespace(classContainer.curr)
  local e = {tag = "enum", name = given(parsed.name) and scope..parsed.name, doc = parsed.doc, items = {}}
  for i = 1, parsed.n do
    local value = parsed.values[parsed[i]]
    if not tonumber(value) then refuse(scope..parsed[i], "an enumerator needs its number") end
    e.items[i] = {name = parsed.lnames[i], value = value, doc = parsed.valueDocs[parsed[i]]}
  end
  if e.name then table.insert(package.enums, e.name) end
  return e
end

local makeItems

local function makeClass(parsed)
  local c = {
    tag = "class", name = parsed.lname, type = parsed.type, base = parsed.btype or "", doc = parsed.doc,
    collected = parsed.attributes.collected, printed = parsed.attributes.printed,
    abstract = parsed.flags.pure_virtual,
  }
  note(c.type)
  note(c.base)
  push(parsed)
  c.items = makeItems(parsed, c)
  pop()
  return c
end

local function makeModule(parsed)
  push(parsed)
  local m = {tag = "module", name = parsed.name, items = makeItems(parsed)}
  pop()
  for _, item in ipairs(m.items) do m.hasVariables = m.hasVariables or item.tag == "variable" or nil end
  return m
end

function makeItems(node, class)
  local items, overloads = {}, {}
  for _, parsed in ipairs(node) do
    local kind, item = getmetatable(parsed), nil
    if kind == classClass then item = makeClass(parsed)
    elseif kind == classNamespace or kind == classModule then item = makeModule(parsed)
    elseif kind == classFunction or kind == classOperator then item = makeFunction(parsed, class, overloads)
    elseif kind == classVariable then item = makeVariable(parsed, class)
    elseif kind == classEnumerate then item = makeEnum(parsed)
    elseif kind == classCode then item = {tag = "chunk", text = clean(parsed.text)}
    elseif kind == classVerbatim then table.insert(package.includes, (string.gsub(parsed.line, "\n$", "")))
    elseif kind ~= classTypedef then refuse(tostring(parsed.name), "this kind of member is not supported") end
    items[#items + 1] = item
  end
  return items
end

-- type strings without a class, one a line beside the packages
local function readOpaqueTypes()
  local types = {}
  local file = io.open("opaque_types.txt")
  if not file then return types end
  for line in file:lines() do types[line] = true end
  file:close()
  return types
end

local function build(parsed)
  package = {name = parsed.name, typeSet = {}, includes = {}, enums = {}, types = {}, foreignEnums = foreign_enums,
             opaque = readOpaqueTypes()}
  package.items = makeItems(parsed) -- tolua++ has pushed the package already
  if undocumentedRest() then refuse("end", "documentation of nothing") end
  for typeString in pairs(package.typeSet) do table.insert(package.types, typeString) end
  table.sort(package.types)
  return package
end

return {build = build}
