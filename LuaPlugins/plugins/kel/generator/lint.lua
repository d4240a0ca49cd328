-- What no single package shows, checked over the models of all packages:
--
--   lua5.1 lint.lua PACKAGES MODEL...
--
-- PACKAGES is the folder with open_order.txt, unopened.txt, opaque_types.txt (type strings without a class, one a
-- line) and repeated.txt (what may differ between packages: type string or function, then the reason).
-- Every fault is one line on standard error; any fault makes the status 1.
local packagesFolder = arg[1]
local faults, waiting = 0, {}

local function fault(where, text)
  faults = faults + 1
  io.stderr:write(where, ": ", text, "\n")
end

-- the first word of each line -> the rest of it
local function readList(name)
  local list, order = {}, {}
  local file = io.open(packagesFolder.."/"..name)
  if not file then return list, order end
  for line in file:lines() do
    local entry, reason = string.match(line, "^([^#\t]+)\t?(.*)$")
    if entry then
      list[entry] = reason
      order[#order + 1] = entry
    end
  end
  file:close()
  return list, order
end

local _, order = readList("open_order.txt")
local unopened, unopenedOrder = readList("unopened.txt")
local opaque, repeated = readList("opaque_types.txt"), readList("repeated.txt")

local packages, byName = {}, {}
for i = 2, #arg do
  packages[#packages + 1] = dofile(arg[i])
  byName[packages[#packages].name] = packages[#packages]
end

local complete = true
for _, list in ipairs {order, unopenedOrder} do
  for _, name in ipairs(list) do complete = complete and byName[name] ~= nil end
end

local function walk(items, f, path)
  for _, item in ipairs(items) do
    f(item, path)
    if item.tag == "class" or item.tag == "module" then
      walk(item.items, f, path == "" and item.name or path.."."..item.name)
    end
  end
end

local function checkOrder()
  local listed = {}
  for _, name in ipairs(order) do listed[name] = true end
  for _, package in ipairs(packages) do
    if #order > 0 and not listed[package.name] and not unopened[package.name] then
      fault(package.name, "the package is neither in open_order.txt nor in unopened.txt")
    end
  end
end

-- while packages are missing, what they will bind is only counted
local function checkTypes()
  local bound, enums = {}, {}
  for _, package in ipairs(packages) do
    walk(package.items, function(item) if item.tag == "class" then bound[item.type] = package.name end end, "")
    for _, enum in ipairs(package.enums) do enums[enum] = true end
  end
  local function unknown(package, text)
    if complete then fault(package.name, text) else waiting[#waiting + 1] = text end
  end
  for _, package in ipairs(packages) do
    for _, type in ipairs(package.types) do
      if enums[type] then fault(package.name, "'"..type.."' is an enum of another package: name it by ##enum")
      elseif not bound[type] and not opaque[type] then unknown(package, "'"..type.."' is neither bound nor in opaque_types.txt") end
    end
    for _, enum in ipairs(package.foreignEnums) do
      if not enums[enum] then unknown(package, "no package declares the enum '"..enum.."'") end
    end
  end
  for type in pairs(opaque) do
    if bound[type] and not unopened[bound[type]] then fault(bound[type], "'"..type.."' is bound, but in opaque_types.txt") end
  end
end

-- what a registration says, for comparing it with another one of the same name
local function fingerprint(item)
  if item.tag == "class" then return "class "..item.type.." base '"..item.base.."' collected "..tostring(item.collected) end
  if item.tag == "variable" then return "variable "..item.member.." "..tostring(item.readonly) end
  if item.tag == "function" then
    local types = {}
    for i, argument in ipairs(item.args) do
      types[i] = (argument.typeString or argument.kind)..(argument.default and "="..argument.default or "")
    end
    return "function "..item.self.." ("..table.concat(types, ", ")..") "..(item.result.typeString or item.result.kind)
  end
end

-- path -> what each package enters there, overloads in order
local function registrations(package)
  local result = {}
  local function add(path, text) result[path] = (result[path] and result[path].."; " or "")..text end
  walk(package.items, function(item, path)
    local prefix = path == "" and "" or path.."."
    local text = fingerprint(item)
    if text then add(prefix..item.name, text) end
    if item.tag == "enum" then
      for _, e in ipairs(item.items) do add(prefix..e.name, "constant "..tonumber(e.value)) end
    end
  end, "")
  return result
end

local function isBare(text) return string.find(text, "^class .* base '' collected nil$") ~= nil end

-- a bare class beside the real one is the usual forward declaration
local function checkRepetitions()
  local first = {}
  for _, package in ipairs(packages) do
    for path, text in pairs(registrations(package)) do
      local other = first[path]
      if not other or isBare(other.text) then first[path] = {package = package.name, text = text}
      elseif other.text ~= text and not isBare(text) and not repeated[path] then
        fault(package.name, path.." is also in "..other.package.." and differs:\n  "..text.."\n  "..other.text)
      end
    end
  end
end

local function documented(item) return item.doc and #item.doc > 0 end

-- one overload's documentation serves all of its name
local function checkDocumentation()
  for _, package in ipairs(packages) do
    local missing, has = {}, {}
    walk(package.items, function(item, path)
      local own = item.name and string.match(item.name, "[^:]+$") or "enum"
      local name = (path == "" and "" or path..".")..own
      if item.tag == "module" or item.tag == "chunk" or item.inherits or item.destructor then return end
      if item.tag == "class" and #item.items == 0 then return end
      if documented(item) then has[name] = true else missing[#missing + 1] = name end
    end, "")
    for _, name in ipairs(missing) do
      if not has[name] then
        has[name] = true
        fault(package.name, name.." has no documentation")
      end
    end
  end
end

checkOrder()
checkTypes()
checkRepetitions()
checkDocumentation()
if #waiting > 0 then print(#waiting.." references wait for packages that are not declared yet") end
os.exit(faults == 0 and 0 or 1)
