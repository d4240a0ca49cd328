-- Constructors, operators, static functions, methods, objects.
local harness = ...
local run, eval = harness.with("V, B, v, w, b, wheel, h", function()
  local V, B = test.Vector, test.Body
  return V, B, V(1, 2, 3), V(4, 5, 6), B("bob"), test.Wheel(), test.Holder()
end)

-- constructors
eval {
  "V()", "V(2)", "V(1, 2, 3)", "V(v)", "V({1, 2, 3})", "V({1, 2})", "V({1, 'x', 3})", "V(nil)", "V('2')", "V('q')",
  "V(1, 2)", "V(1, 2, 3, 4)", "V:new()", "V:new(2)", "V:new('q', {})", "V:new_local(v)", "B('x')", "B:new('x')",
  "B:new_local('x')", "B:new(nil)", "B:new({})", "B(1)", "V.new()", "V:new(1, nil)",
}

-- operators, static functions, methods
eval {
  "v + w", "v - w", "v * w", "v * 2", "2 * v", "v / 2", "v + 1", "1 + v", "v + nil", "v == V(1, 2, 3)", "v == w",
  "v < w", "v <= w", "w > v", "(v * 2):length()", "(v * 2):set(1)", "(v * 2) + v", "v['.sub'](v)", "v['.add'](v, nil)",
  "v['.add'](nil, v)", "v['.test::Pair'](v)", "v['.test::Pair'](nil)", "v[0]", "v[2.9]", "v['1']", "v['.geti'](v, 'x')",
  "v['.geti'](nil, 1)", "v['.seti'](nil, 1, 2)", "v['.seti'](v, 1)", "V:axis(1)", "V:axis('1')", "V:axis()",
  "V:axis(1, 2)", "V.axis()", "v:length()", "v:length(1)", "v:length(nil)", "V.length()", "V.length(nil)",
  "V.length(3)", "V.length({})", "V.length(V)", "V.length(b)", "b.length", "v:set(7, 8, 9)", "v:set(w)", "v:set(1, 2)",
  "v:set()", "v:set(nil)", "v:set('x')", "v:set(b)", "type(v:ptr())", "v.x", "v.nothing", "test.cross(v, w)",
  "test.cross(v)", "test.cross(v, nil)", "test.cross(nil, v)", "test.cross(v, w, 1)", "tolua.type(v)",
  "tolua.type(v * 2)",
}
run("seti", "v[0] = 9 v[1] = '8' return v.x, v[1]")
run("seti bad", "v[0] = 'x'")
run("set with index", "v:set(5, 1.9) return v[1]")
run("variable", "v.x = 5 return v.x, v[0]")
run("variable bad", "v.x = 'q'")
run("variable table", "v.x = {}")
run("variable nil", "v.x = nil")
run("own fields", "v.mine = 3 return v.mine, w.mine")

-- objects
eval {
  "b:getName()", "b:setName('jim')", "b:setName(nil)", "b:setName(12)", "b:setName({})", "b:setName()", "b:log('x')",
  "b:position()", "b:constPosition()", "b:getPosition()", "b:getConstCopy()", "b:constPosition():set(1)",
  "b:getConstCopy():length()", "b:setPosition(v)", "b:setPosition(1, 2, 3)", "b:setPosition(1)", "b:setPosition(nil)",
  "b:part():get()", "b:partPointer():get()", "b:part() == b:partPointer()", "b:noPart()", "b:clone()",
  "b:clone():getReferenceCount()", "b:self() == b", "b:getMode()", "b:setMode(2.9)", "b:setMode('x')", "B.STATIC",
  "B.MOVED", "B.KINEMATIC", "B.Mode", "b.STATIC", "b:angles(1, 2.5, true, 'a', 3)", "b:angles(1, 2, nil, nil, 3)",
  "b:angles(1, 2, true, 'a')", "b:angles(1, 2, 1, 'a', 3)", "b:find(1)", "b:find('one')", "b:find('1')", "b:find(b)",
  "b:find(nil)", "b:find(v, true)", "b:find(v, false)", "b:find(nil, true)", "b:find({})", "b:find(wheel)", "b:find()",
  "b:optional()", "b:optional(1)", "b:optional(1, 2, false, 'x', b)", "b:optional('x')", "b:optional(1, nil)",
  "b:optional(1, 2, nil)", "b:optional(1, 2, true, nil)", "b:optional(1, 2, true, 'x', nil)",
  "b:optional(1, 2, true, 'x', v)", "b:Begin()", "b.begin", "b:getReferenceCount()", "B.getName(nil)", "B.getName(3)",
  "wheel:radius()", "wheel:getName()", "wheel:self()", "B.getName(wheel)", "test.Wheel.radius(b)",
  "wheel.__test__Streamed__", "b.__test__Streamed__", "tolua.cast(b, 'test::Wheel')", "tolua.cast(nil, 'test::Wheel')",
  "h:value()", "h:inner()", "test.Holder.value(nil)", "test.Holder.delete(nil)", "test.Holder.delete(3)", "h:delete(1)",
  "test.Body.delete", "test.readOpaque(test.makeOpaque(4))", "test.readOpaque(nil)", "test.readOpaque(v)",
  "test.makeOpaque(4)", "test.hidden()", "test.isHidden(test.hidden())", "test.isHidden(nil)", "test.isHidden(b)",
  "type(test.Unused)", "test.Streamed.x",
}
