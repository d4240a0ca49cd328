-- Prints what calls on the test packages give, one line a call: the same for tolua++'s own wrappers and for ours.
local V, B = test.Vector, test.Body

local function show(value)
  if type(value) == "userdata" then return "<"..tolua.type(value)..">" end
  if type(value) == "number" then return string.format("%.17g", value) end
  return tostring(value)
end

-- the text without the script's position in front and what our reports add behind
local function contract(message)
  message = string.gsub(message, "^.-:%d+: ", "")
  message = string.gsub(string.gsub(message, "\n     given:.*", ""), "\n     signatures:.*", "")
  return (string.gsub(string.gsub(message, "%s+$", ""), "%s+", " "))
end

local function try(label, f, ...)
  local results = {pcall(f, ...)}
  local texts = {}
  for i = 2, table.maxn(results) do texts[i - 1] = results[1] and show(results[i]) or contract(results[i]) end
  print(label..": "..(results[1] and "" or "error ")..table.concat(texts, " | "))
end

-- the same as chunks, for everything that is not one call
local function run(label, code)
  local values = "local V, B, v, w, b, wheel, h = ..."
  local chunk = assert(loadstring(values.." "..code))
  try(label or code, chunk, V, B, V(1, 2, 3), V(4, 5, 6), B("bob"), test.Wheel(), test.Holder())
end
local function eval(expression) run(expression, "return "..expression) end

-- constructors
for _, call in ipairs {
  "V()", "V(2)", "V(1, 2, 3)", "V(v)", "V({1, 2, 3})", "V({1, 2})", "V({1, 'x', 3})", "V(nil)", "V('2')", "V('q')",
  "V(1, 2)", "V(1, 2, 3, 4)", "V:new()", "V:new(2)", "V:new('q', {})", "V:new_local(v)", "B('x')", "B:new('x')",
  "B:new_local('x')", "B:new(nil)", "B:new({})", "B(1)", "V.new()", "V:new(1, nil)",
} do eval(call) end

-- operators, static functions, methods
for _, call in ipairs {
  "v + w", "v - w", "v * w", "v * 2", "2 * v", "v / 2", "v + 1", "1 + v", "v + nil", "v == V(1, 2, 3)", "v == w",
  "v < w",
  "v <= w", "w > v", "(v * 2):length()", "(v * 2):set(1)", "(v * 2) + v", "v['.sub'](v)", "v['.add'](v, nil)",
  "v['.add'](nil, v)",
  "v['.test::Pair'](v)", "v['.test::Pair'](nil)", "v[0]", "v[2.9]", "v['1']", "v['.geti'](v, 'x')",
  "v['.geti'](nil, 1)",
  "v['.seti'](nil, 1, 2)", "v['.seti'](v, 1)", "V:axis(1)", "V:axis('1')", "V:axis()", "V:axis(1, 2)", "V.axis()",
  "v:length()", "v:length(1)", "v:length(nil)", "V.length()", "V.length(nil)", "V.length(3)", "V.length({})",
  "V.length(V)", "V.length(b)", "b.length", "v:set(7, 8, 9)", "v:set(w)", "v:set(1, 2)", "v:set()", "v:set(nil)",
  "v:set('x')",
  "v:set(b)", "type(v:ptr())", "v.x", "v.nothing", "test.cross(v, w)", "test.cross(v)", "test.cross(v, nil)",
  "test.cross(nil, v)",
  "test.cross(v, w, 1)", "tolua.type(v)", "tolua.type(v * 2)",
} do eval(call) end
run("seti", "v[0] = 9 v[1] = '8' return v.x, v[1]")
run("seti bad", "v[0] = 'x'")
run("set with index", "v:set(5, 1.9) return v[1]")
run("variable", "v.x = 5 return v.x, v[0]")
run("variable bad", "v.x = 'q'")
run("variable table", "v.x = {}")
run("variable nil", "v.x = nil")
run("own fields", "v.mine = 3 return v.mine, w.mine")

-- objects
for _, call in ipairs {
  "b:getName()", "b:setName('jim')", "b:setName(nil)", "b:setName(12)", "b:setName({})", "b:setName()", "b:log('x')",
  "b:position()", "b:constPosition()", "b:getPosition()", "b:getConstCopy()", "b:constPosition():set(1)",
  "b:getConstCopy():length()",
  "b:setPosition(v)", "b:setPosition(1, 2, 3)", "b:setPosition(1)", "b:setPosition(nil)", "b:part():get()",
  "b:partPointer():get()",
  "b:part() == b:partPointer()", "b:noPart()", "b:clone()", "b:clone():getReferenceCount()", "b:self() == b",
  "b:getMode()",
  "b:setMode(2.9)", "b:setMode('x')", "B.STATIC", "B.MOVED", "B.KINEMATIC", "B.Mode", "b.STATIC",
  "b:angles(1, 2.5, true, 'a', 3)", "b:angles(1, 2, nil, nil, 3)", "b:angles(1, 2, true, 'a')",
  "b:angles(1, 2, 1, 'a', 3)",
  "b:find(1)", "b:find('one')", "b:find('1')", "b:find(b)", "b:find(nil)", "b:find(v, true)", "b:find(v, false)",
  "b:find(nil, true)",
  "b:find({})", "b:find(wheel)", "b:find()", "b:optional()", "b:optional(1)", "b:optional(1, 2, false, 'x', b)",
  "b:optional('x')",
  "b:optional(1, nil)", "b:optional(1, 2, nil)", "b:optional(1, 2, true, nil)", "b:optional(1, 2, true, 'x', nil)",
  "b:optional(1, 2, true, 'x', v)", "b:Begin()", "b.begin", "b:getReferenceCount()", "B.getName(nil)", "B.getName(3)",
  "wheel:radius()", "wheel:getName()", "wheel:self()", "B.getName(wheel)", "test.Wheel.radius(b)",
  "wheel.__test__Streamed__",
  "b.__test__Streamed__", "tolua.cast(b, 'test::Wheel')", "tolua.cast(nil, 'test::Wheel')", "h:value()", "h:inner()",
  "test.Holder.value(nil)", "test.Holder.delete(nil)", "test.Holder.delete(3)", "h:delete(1)", "test.Body.delete",
  "test.readOpaque(test.makeOpaque(4))", "test.readOpaque(nil)", "test.readOpaque(v)", "test.makeOpaque(4)",
  "test.hidden()",
  "test.isHidden(test.hidden())", "test.isHidden(nil)", "test.isHidden(b)", "test.Unused", "test.Streamed.x",
} do eval((string.gsub(call, "test%.Unused", "type(test.Unused)"))) end

-- numbers
for _, method in ipairs {"int8", "uint8", "int16", "int32", "uint32", "int64", "uint64", "real32"} do
  for _, number in ipairs {"0", "-1", "1.9", "-1.9", "127", "128", "255", "256", "300", "-300", "65535", "70000",
  "2^31", "2^32 + 5", "-3", "2^53", "-2^53"} do
    eval("b:"..method.."("..number..")")
  end
end

-- variables
run("numbers", "b.id = 7.9 b.rest = 0.1 return b.id, b.rest")
run("negative unsigned", "b.id = -1 return b.id")
run("flag", "b.awake = false return b.awake")
run("flag bad", "b.awake = 1")
run("read only", "b.label = 'z' return b.label")
run("const", "return b.mass")
run("view", "local view = b.velocity view:set(1, 1, 1) b.velocity = w return b.velocity.x, view.x, view == b.velocity")
run("view nil", "b.velocity = nil")
run("view number", "b.velocity = 3")
run("pointer", "b.target = wheel local t = b.target b.target = nil return t, b.target")
run("pointer bad", "b.target = v")
run("static", "B.limit = 12 return B.limit")
run("static bad", "B.limit = 'x'")
run("static read only", "return B.SEPARATOR")
run("getter nil", "return B['.get'].rest(nil)")
run("setter nil", "return B['.set'].rest(nil, 1)")
run("second base nil", "return B['.get'].__test__Streamed__(nil)")
run("views change", "b:position():set(3, 3, 3) return b:getPosition().x, b:constPosition().x")

-- ownership
local function settle() for _ = 1, 3 do collectgarbage() end end
settle()
local bodies, holders, opaques = test.bodies(), test.holders(), test.countOpaque()
local function count(label, code)
  assert(loadstring(code))()
  settle()
  print(label..": "..test.bodies() - bodies.." "..test.holders() - holders.." "..test.countOpaque() - opaques)
end
count("called and dropped", "test.Body() test.Holder()")
count("new_local dropped", "test.Body:new_local() test.Holder:new_local()")
count("new dropped", "test.Body:new() test.Holder:new()")
count("new and deleted", "test.Holder:new():delete()")
count("kept", "test.keep(test.Body())")
count("let go", "test.keep(nil)")
count("held by hand", "test.Body():reference()")
count("cloned", "test.Body():clone()")
