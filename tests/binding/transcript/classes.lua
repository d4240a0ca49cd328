-- Three levels of classes: methods, constants and variables through them, and what scripts add to class tables.
local harness, put = ...
local D, R, S = test.Device, test.Drive, test.Servo
local run, eval = harness.with("D, R, S, d, r, s", function() return D, R, S, D(), R(), S() end)
local try = harness.try

eval {
  "d:kind(), r:kind(), s:kind()", "d:level(), r:level(), s:level()", "d:base(), r:base(), s:base()",
  "D.level(s), R.level(s), S.level(s)", "S.level(r)", "R.level(d)", "D.kind(s)", "S.kind(r)", "S.base(d)",
  "D.HIGH, S.HIGH", "R.HIGH, S.LOW", "d.HIGH, r.HIGH, s.HIGH, s.LOW", "D:lowest()", "R:lowest(), S:lowest()",
  "s:lowest()", "d.power, r.power, s.power", "s.ratio, s.angle", "d.ratio", "r.angle", "s.other", "R.level == D.level",
  "R.kind == D.kind", "S.kind == D.kind", "S.base == D.base", "s.base == d.base", "s.note:get(), s.spot.x",
  "s.note == s.note, s.spot == d.spot", "tolua.type(s.note), tolua.type(s.spot)", "S.new == R.new", "S.power",
  "D.power", "D.Grade", "s.Fine", "D.nothing, S.nothing, s.nothing", "D.kind(D)", "D.kind(S)", "D.kind(test)", "d[1]",
  "d['1']", "d[true]", "d[{}]", "d[d]", "D[1]", "S[1]", "S[true]", "s.__test__Streamed__", "r.__test__Streamed__",
  "d.__test__Streamed__", "s.__test__Streamed__ == s", "tolua.type(D), tolua.type(S), tolua.type(test)",
}
run("variables of bases", "s.power, s.ratio, s.angle = 5, 6, 7.9 return s.power, s.ratio, s.angle, d.power, r.ratio")
run("object variable", "s.other = r return s.other == r, tolua.type(s.other), rawequal(s.other, r)")
run("object variable of a base's type", "s.other = s local o = s.other s.other = nil return o:level(), s.other")
run("object variable wrong", "s.other = s.spot")
run("variable with a destructor", "s.note = d.note:append('!') return s.note:get(), r.note:get(), s.note == d.note")
run("variable with a destructor wrong", "s.note = 'text'")
run("variable with a destructor nil", "s.note = nil")
run("part", "s.spot.x = 4 local p = s.spot p:set(1, 2) return s.spot.x, s.spot.y, rawequal(p, s.spot)")
run("part assigned", "local p = s.spot s.spot = test.Point(8, 9) return p.x, p.y")
run("variable through the class table", "return D['.get'].power(s)")
run("variable of the class table", "D.power = 3")
run("connect", "d:connect(s) return d.other:level(), d.other:kind(), rawequal(d.other, s)")
run("connect wrong", "d:connect(d.note)")
run("connect class table", "d:connect(D)")

-- Objects that the engine gives by their lowest type.
run("by base", "local o = test.asDevice(s) return rawequal(o, s), tolua.type(o), o:level()")
run("hidden", "local o = test.hiddenDevice() return tolua.type(o), o:kind(), o:level(), o.angle")
run("hidden, then itself", "local o = test.hiddenDevice() local p = test.hiddenServo() "..
  "return rawequal(o, p), tolua.type(o), tolua.type(p), o:level(), o.angle")
run("itself, then hidden", "local p = test.hiddenServo() local o = test.hiddenDevice() "..
  "return rawequal(o, p), tolua.type(o), o:level()")
run("down by function", "return test.asServo(test.hiddenDevice())")
run("wrong down by function", "return test.asServo(d)")
run("wrong side", "return test.asDevice(test.Body())")
run("const, then plain", "local c = d:constSelf() local t = tolua.type(c) local p = d:plainSelf() "..
  "return t, tolua.type(p), rawequal(c, p), rawequal(d, p)")
run("const of a servo", "local c = test.asConst(s) return tolua.type(c), rawequal(c, s), c:level()")

-- What scripts add, overwrite and take away at each level: seen by objects made before and after.
local old = S()
local function seen(label, key)
  try(label.." "..key, function() return old[key], S()[key], R()[key], D()[key], D[key] end)
  try("tables agree, "..label.." "..
    key, function() return S[key] == S()[key], R[key] == R()[key], D[key] == D()[key] end)
end

local values = {function() return "f" end, 12, "text", false, {}}
for i, value in ipairs(values) do
  local key = "added"..i
  seen("nowhere", key)
  put(D, key, value) seen("in the first", key)
  put(R, key, i) seen("and the second", key)
  put(S, key, -i) seen("and the third", key)
  put(S, key, nil) seen("third taken away", key)
  put(D, key, nil) seen("first taken away", key)
  put(R, key, nil) seen("all taken away", key)
  put(S, key, value) seen("in the third", key)
  put(R, key, value) seen("and in the second", key)
  put(D, key, "again") seen("and in the first", key)
  for _, class in ipairs {S, R, D} do put(class, key, nil) seen("taken away", key) end
end

for _, class in ipairs {D, R, S} do
  for _, key in ipairs {"base", "level", "kind", "HIGH"} do
    local before = rawget(class, key)
    put(class, key, function(self) return "overwritten", tolua.type(self) end)
    seen("overwritten", key)
    try("call "..key, function() return old[key](old) end)
    try("call base "..key, function() local d = D() return d[key](d) end)
    put(class, key, before)
    seen("restored", key)
    if key ~= "HIGH" then try("call restored "..key, function() return old[key](old) end) end
  end
end

-- Methods that scripts write.
put(D, "twice", function(self) return 2 * self:level() end)
eval {"d:twice(), r:twice(), s:twice()", "S.twice(d)"}
put(R, "twice", function(self) return -D.twice(self) end)
eval {"d:twice(), r:twice(), s:twice()"}
put(D, "twice", nil)
eval {"d.twice", "s:twice()"}
put(R, "twice", nil)
eval {"d:twice()", "s:twice()"}
run("own class constructor",
  "local make = S.new_local S.new_local = nil local o = S.new_local rawset(S, 'new_local', make) return o")

-- Around the accessors of variables.
for _, class in ipairs {D, R, S} do
  rawset(class, "power", "raw")
  seen("raw beside a variable", "power")
  run("set beside a raw field", "s.power = 4 return s.power, rawget(S, 'power')")
  rawset(class, "power", nil)
  seen("variable again", "power")
end
local getter = D[".get"].power
D[".get"].power = function() return "script" end
seen("getter that is no C function", "power")
D[".get"].power = nil
seen("getter taken away", "power")
D[".get"].power = getter
seen("getter again", "power")

-- Keys that are no texts.
for _, key in ipairs {1, true, 0.5} do
  put(D, key, "key")
  try("key "..tostring(key), function() return old[key], D[key] end)
  put(D, key, nil)
  try("no key "..tostring(key), function() return old[key], D[key] end)
end

-- Tables below the class tables, and modules.
run("class of a script", [[
  local own = setmetatable({}, {__index = S})
  return own.level == S.level, own.HIGH, own.nothing, own.level(s)]])
run("module fields", "test.mine = 5 local m = test.mine test.mine = nil return m, test.mine, test.nothing")
run("module function",
  "local f = test.asDevice test.asDevice = nil local n = test.asDevice test.asDevice = f return n, test.asDevice == f")
try("pairs", function()
  local names = {}
  for name in pairs(S) do
    if type(name) == "string" and string.sub(name, 1, 2) ~= "__" then names[#names + 1] = name end
  end
  table.sort(names)
  return table.concat(names, " ")
end)
