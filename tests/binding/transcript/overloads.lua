-- Which form of a function takes which arguments.
local harness = ...
local NAMES = "C, c, d, r, s, p, k, o, v"
local _, eval = harness.with(NAMES, function()
  local s, p = test.Servo(), test.Point(3, 4)
  local stands = {}
  tolua.inherit(stands, s)
  return test.Chooser, test.Chooser(), test.Device(), test.Drive(), s, p, p:constCopy(), stands, test.Vector(1, 2, 3)
end)

local VALUES = {
  "1", "-2.5", "'3'", "'x'", "''", "true", "false", "nil", "d", "r", "s", "p", "k", "o", "v", "{}", "{1, 2}", "{1}",
  "{1, 'x'}", "{'1', '2'}", "C", "c", "test.Device", "print", "io.stdout", "v:ptr()", "coroutine.create(print)",
  "0 / 0", "test.hiddenDevice()", "d:constSelf()",
}
for _, name in ipairs {
  "pick", "order", "upward", "downward", "arity", "access", "plainOnly", "plainPointer", "constPointer", "address",
} do
  for _, value in ipairs(VALUES) do eval {"c:"..name.."("..value..")"} end
  eval {"c:"..name.."()", "c:"..name.."(1, 2)", "c:"..name.."(1, nil)", "c:"..name.."(nil, nil)",
    "c:"..name.."(1, 2, 3)",
        "c:"..name.."(1, 2, true)", "c:"..name.."(1, 2, false)", "c:"..name.."(1, 2, nil)",
        "c:"..name.."(1, 2, true, 4)",
        "C."..name.."(nil, 1)", "C."..name.."(d, 1)", "C."..name.."(C, 1)", "C."..name.."({}, 1)", "C."..name.."()"}
end
for _, first in ipairs {"1", "'1'", "'x'", "nil", "d", "s", "o", "p", "{}"} do
  for _, second in ipairs {"1", "'1'", "'x'", "nil", "d"} do eval {"c:mixed("..first..", "..second..")"} end
end
for _, call in ipairs {
  "C:either(1)", "C:either('1')", "C:either('x')", "C:either(nil)", "C:either({})", "C:either()", "C:either(1, 2)",
  "c:either(1)", "C.either(C, 'x')",
} do eval {call} end

-- The same place in a script with arguments of changing kinds, back and forth.
harness.try("changing arguments", function()
  local c, d, p = test.Chooser(), test.Device(), test.Point(5, 6)
  local list = {1, "x", true, d, p, {1, 2},
    "7", test.Servo(), 1, p, p:constCopy(), "x", false, {3, 4}, 2, d, test.Vector()}
  local texts = {}
  for _ = 1, 3 do
    for i, value in ipairs(list) do
      local ok, text = pcall(c.pick, c, value)
      texts[#texts + 1] = ok and text or "error"
    end
  end
  return table.concat(texts, ", ")
end)
harness.try("changing tables", function()
  local c, s = test.Chooser(), test.Servo()
  local stands, texts = {1, 2}, {}
  for i = 1, 8 do
    if i == 3 then tolua.inherit(stands, s) end
    if i == 5 then stands[2] = "x" end
    if i == 7 then stands[".c_instance"] = nil end
    local ok, text = pcall(c.pick, c, stands)
    texts[#texts + 1] = ok and text or "error"
  end
  return table.concat(texts, ", ")
end)
harness.try("changing texts", function()
  local v, texts = test.Vector(1, 2, 3), {}
  for _, value in ipairs {"1", "x", 2, "3", {}, "4.5", "0x10", " 5 ", "5 x", ""} do
    local ok, text = pcall(v.set, v, value, 1)
    texts[#texts + 1] = ok and tostring(v[1]) or "error"
  end
  return table.concat(texts, ", ")
end)
