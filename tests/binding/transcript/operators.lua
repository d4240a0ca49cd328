-- Every operator, with right and wrong operands on both sides.
local harness = ...
local V, P = test.Vector, test.Point
local run, eval = harness.with("V, P, v, w, c, p, q, d, t, u", function()
  local v, d = V(1, 2, 3), test.Device()
  return V, P, v, V(4, 5, 6), v * 1, P(1, 2), P(3, 4), d, test.Text("a"), test.Text("b")
end)

local OPERANDS = {
  "v", "c", "V(0)", "p", "d", "t", "1", "'2'", "'x'", "nil", "true", "{}", "{1, 2, 3}", "V", "print", "io.stdout",
  "v:ptr()", "v:ptr() and d.spot",
}
for _, operator in ipairs {"+", "-", "*", "/", "==", "<", "<=", ">", "..", "%", "^", "~="} do
  for _, operand in ipairs(OPERANDS) do
    eval {"v "..operator.." ("..operand..")", "("..operand..") "..operator.." v"}
    if operator == "+" or operator == "==" or operator == "<" then
      eval {"t "..operator.." ("..operand..")", "("..operand..") "..operator.." p", "d "..operator.." ("..operand..")"}
    end
  end
end

eval {
  "v == c, c == v", "v == V(1, 2, 3), V(1, 2, 3) == v, v ~= w", "c == w * 0.25", "p == p:constSelf()",
  "p == p:constCopy(), p:constCopy() == p", "p:copy() == p", "p == q, q == p", "t == test.Text('a'), t == u",
  "t < u, u < t, t > u, t < t", "(t + u):get()", "(t + u + t):get()", "tolua.type(t + u)", "tolua.type(v + w)",
  "tolua.type(v * 2), tolua.type(c * 2), tolua.type(v / 2)", "(v + w).x, (v - w).x, (w / 2).x", "(c + c).x",
  "(c - v)[2]", "d == d, d == test.Device()", "d == d:constSelf()", "d == d:plainSelf()", "d.spot == p",
  "d.spot == d.spot", "#v", "v()", "V(1)(2)", "d()",
}

local KEYS = {
  "0", "1", "2", "2.9", "-0.5", "'0'", "'1'", "' 2 '", "'0x1'", "'1e0'", "'-0'", "'x'", "''", "' '", "'.'", "'_1'",
  "true", "nil", "{}", "v", "0 / 0",
}
for _, key in ipairs(KEYS) do
  eval {"v["..key.."]", "c["..key.."]", "p["..key.."]", "d["..key.."]"}
  for _, value in ipairs {"7", "'8'", "'y'", "nil", "true"} do
    local set = "["..key.."] = "..value
    run("v, set "..set, "v"..set.." return v["..key.."], v.x, v[1], v[2]")
    run("p, set "..set, "p"..set.." return p["..key.."], p.x")
  end
end
for _, key in ipairs {"0", "2.9", "'1'"} do run("c, set ["..key.."]", "c["..key.."] = 7") end

run("a replaced operator", "local own = V['.mul'] V['.mul'] = function() return 'replaced' end " ..
  "local product = v * w V['.mul'] = own return product")

for _, name in ipairs {".add", ".sub", ".mul", ".div", ".eq", ".lt", ".geti", ".seti", ".test::Pair"} do
  local f = "v['"..name.."']"
  eval {f.."()", f.."(v)", f.."(v, w)", f.."(v, 1)", f.."(v, 1, 2)", f.."(v, 1, 2, 3)", f.."(1, v)", f.."(nil, nil)",
        f.."(V, v)", f.."(p, v)", f.."(c, c)", f.."(v, nil)", f.."(v, {})",
          "V['"..name.."'] == "..f, "rawget(V, '"..name.."') == "..f}
end
