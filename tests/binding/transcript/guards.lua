-- What every guard says to every kind of value.
local harness = ...
local run, eval = harness.with("V, B, P, D, v, b, p, d, s, h, t, g, stands", function()
  local V, B, P, D = test.Vector, test.Body, test.Point, test.Device
  local stands, s = {}, test.Servo()
  tolua.inherit(stands, s)
  return V, B, P, D, V(1, 2, 3), B("bob"), P(3, 4), D(), s, test.Holder(), test.Text("t"),
         test.Segment(P(), P()), stands
end)

local VALUES = {
  "nil", "1", "'1'", "'x'", "true", "{}", "{1, 2, 3}", "stands", "print", "coroutine.create(print)", "io.stdout",
  "v:ptr()", "v", "v * 2", "p", "p:constCopy()", "d", "d:constSelf()", "s", "b", "h", "t", "V", "D", "test",
  "test.hidden()", "test.makeOpaque(2)",
}

-- one function for each kind of parameter, X stands for the value
local CALLS = {
  "b:int32(X)", "b:setName(X)", "b:log(X)", "b:angles(1, 2, X, 'a', 3)", "b:setMode(X)", "b:setPosition(X)",
  "d:connect(X)", "p:add(X)", "p:take(X)", "t:append(X)", "t + X", "test.cross(X, v)", "test.cross(v, X)",
  "test.asConst(X)", "test.isHidden(X)", "test.readOpaque(X)", "V({X, 1, 2})", "V(X)", "V(1, 2, X)", "B(X)",
  "test.Text(X)", "test.Segment(p, X)", "test.Chooser():address(X)", "V:axis(X)", "b:optional(X)", "b:optional(1, X)",
  "b:optional(1, 2, X)", "b:optional(1, 2, true, X)", "b:optional(1, 2, true, 'x', X)", "b:getName(X)", "p:length(X)",
  "p:set(1, 2, X)", "test.Device(X)", "D:lowest(X)",
}
for _, call in ipairs(CALLS) do
  for _, value in ipairs(VALUES) do eval {(string.gsub(call, "X", value))} end
end

for _, variable in ipairs {"d.power", "b.awake", "b.id", "b.label", "d.other", "d.spot", "d.note", "g.to", "b.mass"} do
  for _, value in ipairs(VALUES) do
    local assignment = variable.." = "..value
    run(assignment, assignment.." return "..variable)
  end
end

-- as the object of methods, const and plain, of accessors, and in place of a class table
for _, call in ipairs {
  "P.length(X)", "P.set(X, 1, 2)", "P.normalise(X)", "D.kind(X)", "D.connect(X, d)", "test.Servo.level(X)",
  "B.getName(X)", "B.getReferenceCount(X)", "test.Text.get(X)", "test.Holder.value(X)", "V.length(X)",
  "V['.geti'](X, 0)", "V['.add'](X, v)", "D['.get'].power(X)", "D['.set'].power(X, 2)", "P['.get'].x(X)",
  "test.Segment['.get'].from(X)",
} do
  for _, value in ipairs(VALUES) do
    -- accessors have no guard: another kind of object would be read as if it were the right one
    local unguarded = string.find(call, "%.[gs]et'%]%.") and value ~= "nil"
    if not unguarded then eval {(string.gsub(call, "X", value))} end
  end
end

-- the number of arguments
for _, call in ipairs {
  "p:length", "p:set", "p:add", "b:setName", "b:angles", "d:kind", "D:lowest", "test.cross", "V:new_local",
  "test.Text:new_local", "b:optional", "t:append", "b:getReferenceCount", "P.length", "P.set", "test.Holder.delete",
} do
  local arguments = ""
  for n = 1, 7 do
    eval {call.."("..arguments..")"}
    arguments = arguments..(n > 1 and ", " or "")..n
  end
end
