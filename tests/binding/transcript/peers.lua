-- A script's own fields on objects, and the tables that hold them.
local harness = ...
local run, eval = harness.with("d, s, p, g, t, b", function()
  return test.Device(), test.Servo(), test.Point(3, 4), test.Segment(test.Point(1, 2), test.Point(3, 4)),
         test.Text("text"), test.Body("bob")
end)

for _, o in ipairs {
  "d", "s", "p", "g", "t", "g:middle()", "t:copy()", "g.from", "g:first()", "s.note", "p:constSelf()", "d:constSelf()",
  "p:constCopy()",
} do
  local function on(label, code) run(label.." of "..o, "local o = "..o.." "..code) end
  on("field", "o.mine = 5 return o.mine, o.other_field, rawequal(o, o)")
  on("fields of all kinds", "o.a, o.b, o.c, o.e = false, 'x', {}, print return o.a, o.b, o.c, o.e")
  on("field taken away", "o.mine = 5 o.mine = nil return o.mine")
  on("function", "function o:double(n) return 2 * n, rawequal(self, o) end return o:double(4)")
  on("number key", "o[1] = 5 o[2.5] = 6 o[-1] = 7 return o[1], o[2.5], o[-1], o[2]")
  on("other keys", "o[true] = 5 o[print] = 6 return o[true], o[print], o[false]")
  on("no peer", "return tolua.getpeer(o)")
  on("peer after a field",
    "o.mine = 5 return type(tolua.getpeer(o)), tolua.getpeer(o).mine, rawget(tolua.getpeer(o), 'mine')")
  on("peer given", "local peer = {mine = 1} tolua.setpeer(o, peer) o.more = 2 "..
    "return rawequal(tolua.getpeer(o), peer), o.mine, peer.more, o.none")
  on("peer given, fields through it", "local peer = {} tolua.setpeer(o, peer) peer.late = 3 return o.late")
  on("peer taken away", "tolua.setpeer(o, {mine = 1}) tolua.setpeer(o, nil) return o.mine, tolua.getpeer(o)")
  on("peer taken away, then a field",
    "tolua.setpeer(o, {mine = 1}) tolua.setpeer(o, nil) o.new = 2 return o.mine, o.new")
  on("peer exchanged",
    "tolua.setpeer(o, {mine = 1}) local first = o.mine tolua.setpeer(o, {mine = 2}) return first, o.mine")
  on("peer with __index table", "tolua.setpeer(o, setmetatable({}, {__index = {deep = 4}})) return o.deep, o.none")
  on("peer with __index function",
    "tolua.setpeer(o, setmetatable({}, {__index = function(t, k) return type(t)..' '..tostring(k) end})) return "..
    "o.deep, o[3]")
  on("peer with __newindex",
    "local seen tolua.setpeer(o, setmetatable({}, {__newindex = function(t, k, v) seen = k..v end})) o.new = 5 "..
    "return o.new, seen")
  on("peer that fails", "tolua.setpeer(o, setmetatable({}, {__index = function() error('no', 0) end})) return o.deep")
end

for _, key in ipairs {"level", "power", "HIGH", "kind"} do
  run("peer shadows "..key, "tolua.setpeer(s, {"..key.." = 'mine'}) return s."..key..", test.Servo()."..key.." == s."..
    key)
end

run("field shadows a method",
  "s.level = function() return 'mine' end return s:level(), test.Servo():level(), test.Servo.level(s)")
run("shadow taken away", "s.level = 5 s.level = nil return s:level()")
run("field with a variable's name", "s.power = 5 return s.power, tolua.getpeer(s)")
run("peer hides a variable from reading",
  "tolua.setpeer(s, {power = 'peer'}) s.power = 8 return s.power, test.Device['.get'].power(s)")
run("false hides a method", "tolua.setpeer(s, {level = false}) return s.level")
run("shared peer", "local peer = {} tolua.setpeer(s, peer) tolua.setpeer(d, peer) s.mine = 5 return d.mine, s.mine")
run("shared peer, one taken away",
  "local peer = {mine = 1} tolua.setpeer(s, peer) tolua.setpeer(d, peer) tolua.setpeer(d, nil) return d.mine, s.mine")
run("peer of two classes", "local peer = setmetatable({}, {__index = function(_, k) return k..'!' end}) "..
  "tolua.setpeer(s, peer) tolua.setpeer(p, peer) return s.x, p.x, p.z, s.level, p.length")
run("peer that refers to its object", "tolua.setpeer(s, {me = s}) return rawequal(s.me.me, s)")
run("peer that asks a class",
  "tolua.setpeer(s, setmetatable({}, {__index = test.Body})) return type(s.getName), s:level()")
run("peer that asks an object", "tolua.setpeer(s, setmetatable({}, {__index = d})) return s.power, s:level()")

run("fields stay through the engine", "s.mine = 5 d:connect(s) return d.other.mine, test.asDevice(s).mine")
run("fields stay under a collection", "s.mine = {5} collectgarbage() collectgarbage() return s.mine[1]")
run("fields of a view stay while it lives",
  "local v = b:position() v.mine = 5 collectgarbage() return b:position().mine")
run("fields through a const handle", "local c = s:constSelf() c.mine = 5 return s.mine")
run("a copy has none", "p.mine = 5 return p:copy().mine, test.Point(p.x, p.y).mine")
run("after a cast", "s.mine = 5 return tolua.cast(s, 'test::Device').mine")
run("operators of a peer", "tolua.setpeer(d, {['.add'] = function() return 1 end}) return d + d")
run("operator names", "d['.add'] = function() return 'added' end return type(d['.add']), d + d")
run("index operator of a peer", "d['.geti'] = function() return 'element' end return d[1]")
run("set operator of a peer",
  "d['.seti'] = function(_, k, v) rawset(tolua.getpeer(d), 'seti', k + v) end d[1] = 4 return d[1], d.seti")

run("setpeer of no object", "return pcall(tolua.setpeer, 3, {})")
run("getpeer of no object", "return pcall(tolua.getpeer, 3)")
run("setpeer gives", "return tolua.setpeer(s, {})")
eval {"tolua.getpeer(s)", "tolua.getpeer(s.spot)"}
