-- The faults that lint.lua finds across packages: lua lint_test.lua GENERATOR FOLDER.
local generator, folder = arg[1], arg[2]

local DOC = 'doc = {"Text."}'

local function class(type, extra)
  local form = '{tag = "class", name = "%s", type = "%s", base = "", items = {}, %s, %s}'
  return string.format(form, string.match(type, "%w+$"), type, DOC, extra or "collected = true")
end

local function method(name, result, extra)
  local form = '{tag = "function", name = "%s", self = "none", args = {}, result = {kind = "%s"}, %s}'
  return string.format(form, name, result, extra or DOC)
end

local function package(name, items, types, enums)
  local form = 'return {name = "%s", types = {%s}, enums = {}, foreignEnums = {%s}, '
    ..'items = {{tag = "module", name = "t", items = {%s}}}}'
  return string.format(form, name, types or "", enums or "", items)
end

local f, numberF = method("f", "bool"), method("f", "number")
local bareF = method("f", "bool", "doc = {}")

-- label, models, lists beside them, expected text (nil for no fault)
local CASES = {
  {"nothing wrong", {a = package("a", class("t::A")..","..f, '"t::A", "t::Opaque"')}, {["opaque_types.txt"] = "t::Opaque\n"}},
  {"an unbound type", {a = package("a", "", '"t::Typo"')}, {}, "a: 't::Typo' is neither bound nor in opaque_types.txt"},
  {"a bound opaque type", {a = package("a", class("t::A"), '"t::A"')}, {["opaque_types.txt"] = "t::A\n"},
   "'t::A' is bound, but in opaque_types.txt"},
  {"an undeclared enum", {a = package("a", "", "", '"t::E"')}, {}, "no package declares the enum 't::E'"},
  {"an enum taken for a class",
   {a = package("a", "", '"t::E"'), b = 'return {name = "b", types = {}, enums = {"t::E"}, foreignEnums = {}, items = {}}'},
   {["opaque_types.txt"] = "t::E\n"}, "a: 't::E' is an enum of another package"},
  {"functions that differ", {a = package("a", f), b = package("b", numberF)}, {}, "t.f is also in"},
  {"functions that may differ", {a = package("a", f), b = package("b", numberF)}, {["repeated.txt"] = "t.f\tthe later counts\n"}},
  {"equal functions", {a = package("a", f), b = package("b", f)}, {}},
  {"a bare class beside the real one",
   {a = package("a", class("t::A", "collected = nil")), b = package("b", class("t::A"))}, {}},
  {"no documentation", {a = package("a", bareF)}, {}, "a: t.f has no documentation"},
  {"documentation on one overload", {a = package("a", bareF..","..f)}, {}},
  {"a package without a place", {a = package("a", "")}, {["open_order.txt"] = "b\n"},
   "neither in open_order.txt nor in unopened.txt"},
  {"types of packages that are not there yet", {a = package("a", "", '"t::Later"')}, {["open_order.txt"] = "a\nb\n"}},
}

local function write(name, text)
  local file = assert(io.open(folder.."/"..name, "w"))
  file:write(text)
  file:close()
end

local faults = 0
for _, case in ipairs(CASES) do
  local label, models, lists, expected = case[1], case[2], case[3], case[4]
  os.execute("rm -rf '"..folder.."' && mkdir -p '"..folder.."'")
  for name, text in pairs(models) do write(name..".model.lua", text) end
  for name, text in pairs(lists) do write(name, text) end
  local command = "cd '%s' && lua5.1 '%s/lint.lua' . *.model.lua 2>&1; echo status $?"
  local pipe = assert(io.popen(string.format(command, folder, generator)))
  local output = pipe:read("*a")
  pipe:close()
  local good = string.find(output, "status "..(expected and 1 or 0), 1, true)
    and (not expected or string.find(output, expected, 1, true))
  if not good then
    faults = faults + 1
    print(label..": expected "..tostring(expected)..", got:\n"..output)
  end
end
print(#CASES.." sets of packages, "..faults.." judged wrongly")
os.exit(faults == 0 and 0 or 1)
