-- The functions of the table `tolua`, and tables that stand for objects.
local harness = ...
local run, eval = harness.with("V, D, S, v, d, r, s, p, t, g", function()
  return test.Vector, test.Device, test.Servo, test.Vector(1, 2, 3), test.Device(), test.Drive(), test.Servo(),
         test.Point(3, 4), test.Text("text"), test.Segment(test.Point(1, 2), test.Point(3, 4))
end)

for _, value in ipairs {
  "nil", "1", "'s'", "true", "{}", "print", "io.stdout", "coroutine.create(print)", "v", "v * 2", "d", "d:constSelf()",
  "D", "test", "v:ptr()", "g.from", "s", "test.hidden()", "test.makeOpaque(1)", "newproxy()", "newproxy(true)",
  "setmetatable({}, {__index = s})", "v['.test::Pair'](v)",
} do
  eval {"tolua.type("..value..")"}
end

for _, object in ipairs {
  "d", "r", "s", "p", "t", "v", "v * 2", "d:constSelf()", "s:constSelf()", "g.from", "test.hiddenDevice()", "v:ptr()",
  "nil", "test.hidden()",
} do
  for _, type in ipairs {
    "test::Device", "const test::Device", "test::Drive", "test::Servo", "test::Point", "test::Body",
    "const test::Point", "test::Vector", "test::Text", "test::Streamed", "kel::Referenced", "test::Hidden",
  } do
    eval {"tolua.type(tolua.cast("..object..", '"..type.."'))",
      "rawequal(tolua.cast("..object..", '"..type.."'), "..object..")"}
  end
end
run("cast up, call", "local o = tolua.cast(s, 'test::Device') return o:level(), o:kind(), o.angle, tolua.type(s)")
run("cast down, call", "local o = tolua.cast(test.hiddenDevice(), 'test::Servo') return o:level(), o:kind(), o.angle")
run("cast to const, change", "local o = tolua.cast(p, 'const test::Point') return o:set(1, 2)")
run("cast from const, change", "local o = tolua.cast(g:first(), 'test::Point') o:set(1, 2) return o.x, g.from.x")
run("cast of an address", "local o = tolua.cast(v:ptr(), 'test::Vector') return o:length(), rawequal(o, v), o.x")
run("cast of an address, change", "tolua.cast(v:ptr(), 'test::Vector'):set(9, 9, 9) return v.x")
run("cast of a number", "return tolua.cast(3, 'test::Device')")
run("cast of a text", "return tolua.cast('s', 'test::Device')")
run("cast of a table", "return tolua.cast({}, 'test::Device')")
run("cast of a class table", "return tolua.cast(D, 'test::Device')")
run("cast of a table that stands for an object",
  "return tolua.type(tolua.cast(tolua.inherit({}, s) or {}, 'test::Device'))")
run("cast across", "local o = tolua.cast(d, 'test::Body') return tolua.type(o), tolua.type(d), d:level()")
run("cast and back",
  "local o = tolua.cast(tolua.cast(s, 'test::Device'), 'test::Servo') return rawequal(o, s), o.angle")

-- tables that stand for objects
local STAND = "local o = {} tolua.inherit(o, s) "
for _, call in ipairs {
  "return D.level(o), S.level(o)", "return D.kind(o)", "return test.asDevice(o)",
  "return rawequal(test.asDevice(o), s)", "d:connect(o) return d.other:level()",
  "d.other = o return rawequal(d.other, s)", "return test.asServo(o)", "o.power = 5 return o.power, s.power",
  "return D['.get'].power(o)", "D['.set'].power(o, 6) return s.power", "return test.Chooser():pick(o)",
  "return test.Chooser():downward(o)", "return test.Chooser():upward(o)", "return test.Chooser():mixed(o, 1)",
  "return test.Chooser():plainPointer(o)", "return test.Chooser():constPointer(o)", "return test.Body().find(o)",
  "return V.length(o)", "return test.cross(o, v)", "return o == s", "return tolua.type(o)", "return tolua.getpeer(o)",
  "setmetatable(o, {__index = s}) return o.angle, o.level == S.level",
  "setmetatable(o, {__index = s}) return o:level()", "o['.c_instance'] = d return D.kind(o)",
  "o['.c_instance'] = 3 return D.kind(o)", "o['.c_instance'] = nil return D.kind(o)",
  "o['.c_instance'] = v return D.kind(o)", "return D.reference(o), s:getReferenceCount(), D.unreference(o)",
} do run("stands for, "..call, STAND..call) end
run("stands for a value",
  "local o = {} tolua.inherit(o, v) return V.length(o), test.cross(o, v).x, v:set(o), (v + o).x")
run("stands for a value on the left", "local o = {} tolua.inherit(o, v) return (o + v).x")
run("stands for a copy", "local o = {} tolua.inherit(o, v * 2) return V.length(o), (v + o).x")
run("stands for a text", "local o = {} tolua.inherit(o, t) return test.Text.get(o), (t + o):get()")
run("stands for, made from a class",
  "local o = setmetatable({}, {__index = S}) tolua.inherit(o, S()) return o:level(), o:kind(), o.HIGH")
run("stands for, a const object",
  "local o = {} tolua.inherit(o, p:constCopy()) return test.Point.length(o), test.Point.set(o, 1, 2)")
run("stands for, result of inherit", "return tolua.inherit({}, s)")
run("instance in a metatable", "local o = setmetatable({}, {__index = {['.c_instance'] = s}}) return D.kind(o)")

-- ownership as booleans
eval {
  "tolua.takeownership(nil)", "tolua.takeownership(1)", "tolua.takeownership({})", "tolua.releaseownership(nil)",
  "tolua.releaseownership(1)", "tolua.releaseownership({})", "tolua.releaseownership(t)", "tolua.releaseownership(d)",
  "tolua.releaseownership(g.from)", "tolua.releaseownership(test.hiddenDevice())",
  "tolua.releaseownership(test.hidden())",
}
run("type of the tolua functions", [[
  local names = {}
  for _, name in ipairs {'type', 'cast', 'inherit', 'setpeer', 'getpeer', 'takeownership', 'releaseownership'} do
    names[#names + 1] = name..' '..type(tolua[name])
  end
  return table.concat(names, ', ')]])
