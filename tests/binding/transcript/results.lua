-- Copies, views, references that are self or an argument, and const handles.
local harness = ...
local run, eval = harness.with("P, p, q, g, t, d, b, v", function()
  local P = test.Point
  return P, P(3, 4), P(6, 8), test.Segment(P(1, 2), P(3, 4)), test.Text("text"), test.Device(), test.Body("bob"),
         test.Vector(1, 2, 3)
end)

-- identity
for _, pair in ipairs {
  {"p:normalise()", "p"}, {"p:add(q)", "p"}, {"p:normalise():add(q):normalise()", "p"}, {"p:address()", "p"},
  {"p:copy()", "p"}, {"p:take(q)", "q"}, {"p:take(p)", "p"},
  {"g:at(0)", "g.from"}, {"g:at(1)", "g.to"}, {"g:at(0)", "g:at(0)"}, {"g:first()", "g:first()"}, {
    "g:first()", "g:at(0)",
  },
  {"g:flip()", "g"}, {"g:flip():flip()", "g"}, {"g:middle()", "g:middle()"}, {"t:append('x')", "t"},
  {"t:append('x'):append('y')", "t"},
  {"t:copy()", "t"}, {"d:plainSelf()", "d"}, {"d:constSelf()", "d"}, {"d.spot", "d.spot"}, {"d.note", "d.note"},
  {"d:place()", "d:place()"},
  {"P:shared()", "P:shared()"}, {"P:sharedConst()", "P:sharedConst()"}, {"g.from:normalise()", "g.from"},
  {"g.from:take(g.to)", "g.to"},
  {"p:take(g.from)", "g.from"}, {"g.from:take(p)", "p"}, {"p:copy():take(p)", "p"}, {"P.take(p, q)", "q"}, {
    "b:self()", "b",
  },
  {"b:position()", "b:position()"}, {"b:partPointer()", "b:part()"}, {"test.asDevice(d)", "d"}, {
    "d.note:append('')", "d.note",
  },
  {"p:take(d.spot)", "d.spot"}, {"d.spot:take(p)", "p"},
} do
  eval {"rawequal("..pair[1]..", "..pair[2]..")", "tolua.type("..pair[1].."), tolua.type("..pair[2]..")",
        "type("..pair[1]..") == 'userdata' and "..pair[1].." == "..pair[2]}
end

run("chain", "return p:normalise().x, p:normalise():length(), p.x")
run("chain on a copy", "local c = p:copy():normalise() return c.x, p.x")
run("chain on a temporary", "return test.Text('a'):append('b'):append('c'):get()")
run("temporary returned by reference", "local c = P(3, 4):normalise() collectgarbage() return c.x, c.y")
run("temporary of a constructor", "local c = P(3, 4):add(P(1, 1)):take(P(5, 6)) collectgarbage() return c.x, c.y")
run("self by reference keeps fields", "p.mine = 5 return p:normalise().mine, p:address().mine")
run("argument by reference keeps fields", "q.mine = 5 return p:take(q).mine")
run("returned from a coroutine", "return coroutine.wrap(function() return p:normalise() end)().x")
run("many copies", "local sum = 0 for i = 1, 500 do sum = sum + g:middle().x + p:copy().y end return sum")
run("many texts", "local n = 0 for i = 1, 200 do n = n + #(t + t):append('x'):get() end return n")
run("copies apart", "local a, c = p:copy(), p:copy() a:set(0, 0) return c.x, a.x, a == c")
run("result as argument", "return p:add(p:copy()).x, p:add(p).x, p:longer(p:copy():add(q)).x")
run("self as argument", "p:add(p) return p.x, p.y")

-- views
run("views change", "local f = g.from f:set(9, 9) return g.from.x, g:at(0).x, g:first().x")
run("views change back", "local f = g.from g.from = P(5, 5) return f.x, f.y")
run("flip", "local f, e = g.from, g.to g:flip() return f.x, e.x, rawequal(f, g.from)")
run("views of a device", "local n, s = d.note, d.spot n:append('!') s.x = 4 return d.note:get(), d.spot.x")
run("variable assigned from its view", "g.from = g.from g.from = g.to return g.from.x, g.to.x")
run("text assigned from its view", "d.note = d.note return d.note:get()")
run("shared value", "P:shared():set(1, 1) local x = P:sharedConst().x P:shared():set(7, 8) return x, P:sharedConst().y")
run("view through a collection", "local f = g.from for i = 1, 3 do collectgarbage() end return f.x, g.to.x")
run("view refetched", "g.from.x = 8 collectgarbage() collectgarbage() return g.from.x")

-- const
for _, object in ipairs {
  "p:constCopy()", "P:sharedConst()", "g:first()", "v * 2", "b:constPosition()", "b:getConstCopy()",
  "d:constSelf().spot", "tolua.cast(g.from, 'const test::Point')",
} do
  for _, call in ipairs {
    "c:length()", "c:set(1, 2)", "c:set(1, 2, 3)", "c:normalise()", "c:add(p)", "c:constSelf()", "c:copy()",
    "c:take(p)", "p:take(c)", "p:add(c)", "q:copy():longer(c)", "c == p", "p == c", "c.x", "test.Chooser():access(c)",
    "test.Chooser():plainOnly(c)", "test.Chooser():pick(c)", "v + c", "c + v", "v:set(c)", "test.cross(c, c)", "g(c)",
    "test.Segment(c, c).to.x", "tolua.type(c)", "c.nothing",
  } do
    run(call.." with c = "..object, "local c = "..object.." return "..call)
  end
  run("variable of c = "..object, "local c = "..object.." local old = c.x c.x = 5 local new = c.x c.x = old return new")
end
for _, call in ipairs {
  "c:level()", "c:connect(d)", "d:connect(c)", "c:kind()", "c:place():set(1, 2)", "c:constSelf()", "c:plainSelf()",
  "c.power", "c.other", "c.note:append('x')", "c.note:get()", "c:reference()", "c:unreference()", "test.asDevice(c)",
  "test.asConst(c)", "test.Chooser():plainPointer(c)", "test.Chooser():constPointer(c)", "test.Chooser():pick(c)",
  "c == d", "tolua.type(c)", "tolua.type(d)",
} do
  local stays = not string.find(call, "connect") -- the engine's servo outlives what a script connects it with
  if stays then run("const device "..call, "local c = test.asConst(test.hiddenServo()) return "..call) end
  run("const of a known device "..call, "local c = d:constSelf() return "..call)
end
run("const first, plain later",
  "local c = test.asConst(d) local o = test.asDevice(d) return tolua.type(c), tolua.type(o), rawequal(c, o)")

-- the const form of a value
eval {
  "rawequal(p:constSelf(), p)", "rawequal(p:constSelf(), p:constSelf())", "p:constSelf() == p", "p:longer(q) == q",
  "rawequal(p:longer(q), q)", "tolua.type(p:longer(q))", "p:constSelf():length(), p:longer(q):length()",
  "p:constSelf():set(1, 2)",
}
run("const form, then changed", "local c = p:constSelf() p:set(5, 6) return c.x, c.y")
run("const form alone", "local c = P(3, 4):constSelf() collectgarbage() return c.x, c.y")

-- results of all kinds, and how many
for _, call in ipairs {
  "p:set(1, 2)", "p:length()", "b:getName()", "b:setName('x')", "b:noPart()", "b:angles(1, 2, true, 'a', 3)", "t:get()",
  "test.makeText('x')", "test.asDevice(nil)", "d.other", "g:middle()", "test.Body('x')", "test.Body:new_local('x')",
} do
  eval {"select('#', "..call..")"}
end
