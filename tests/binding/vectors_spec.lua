local support = require("tests.binding.support")
local elements, fails, refuses = support.elements, support.fails, support.refuses
local nan, inf = 0 / 0, 1 / 0

local function float(number) return kel.Vec3f(number):x() end

describe("kel.Vec3", function()
  it("is made from a number, three numbers, a vector, nothing, or a plane vector and a number", function()
    assert.same({4, 4, 4}, elements(kel.Vec3(4)))
    assert.same({1, 2, 3}, elements(kel.Vec3(1, 2, 3)))
    assert.same({0, 0, 0}, elements(kel.Vec3()))
    assert.same({1, 2, 3}, elements(kel.Vec3(kel.Vec2(1, 2), 3)))
    local original = kel.Vec3(1, 2, 3)
    kel.Vec3(original):set(7, 8, 9)
    assert.same({1, 2, 3}, elements(original))
  end)

  it("has operators, and products by element under other names", function()
    local a, b = kel.Vec3(1, 2, 3), kel.Vec3(4, 5, 8)
    assert.same({38, true, false}, {a * b, a == kel.Vec3(1, 2, 3), a == b})
    for expected, vector in pairs {
      ["5 7 11"] = a + b, ["3 3 5"] = b - a, ["-1 -2 -3"] = -a, ["2 4 6"] = a * 2, ["2 2.5 4"] = b / 2,
      ["4 10 24"] = kel.Vec3.mul(a, b), ["0.25 0.4 0.375"] = kel.Vec3.div(a, b), ["1 4 -3"] = kel.cross(a, b),
      ["1 0 2"] = kel.Vec3.componentMin(kel.Vec3(1, 5, 2), kel.Vec3(3, 0, 4)),
      ["3 5 4"] = kel.Vec3.componentMax(kel.Vec3(1, 5, 2), kel.Vec3(3, 0, 4)),
    } do
      assert.equal(expected, kel.printVec3(vector))
      assert.equal("kel::Vec3", tolua.type(vector))
    end
    local broken = kel.Vec3(nan, 0, 0)
    assert.is_false(broken[".eq"](broken, broken))
  end)

  it("measures and changes itself", function()
    local v = kel.Vec3(0, 3, -4)
    assert.same({5, 25, 10, 100}, {v:length(), v:length2(), v:distance(-v), v:distance2(-v)})
    assert.same({2, 0, -4, 3}, {v:maxElement(), v:minElement(), v:minComponent(), v:maxComponent()})
    assert.same({true, false, false}, {v:isValid(), v:isNaN(), v:equalsZero()})
    assert.same({0, 3 * (1 / 5), -4 * (1 / 5)}, elements(v:normal()))
    assert.equal(5, v:normalize())
    assert.same({0, 3 * (1 / 5), -4 * (1 / 5)}, elements(v))
    assert.equal(0, select("#", v:clamp(kel.Vec3(1, 0, 4), kel.Vec3(2, 0.5, 2))))
    assert.same({1, 0.5, 4}, elements(v)) -- the lower bound comes first
  end)

  it("sets one element value first, at a truncated index within its memory", function()
    local v = kel.Vec3(1, 2, 3)
    v:set(9, 1)
    v:set(5, 2.9)
    assert.same({1, 9, 5}, elements(v))
    assert.same({5, 0}, {v:at(2.9), v:at(3)})
    fails("out of range", v.at, v, 4)
    fails("out of range", v.set, v, 1, -1)
    v:set(kel.Vec3(4, 5, 6))
    assert.same({4, 5, 6}, elements(v))
  end)

  it("gives fresh axes and random vectors", function()
    kel.Vec3.X_AXIS():set(9, 9, 9)
    for i, axis in ipairs {"X_AXIS", "Y_AXIS", "Z_AXIS"} do
      assert.same({1, 1}, {kel.Vec3[axis]():length(), elements(kel.Vec3[axis]())[i]})
    end
    local v = kel.Vec3.random(-2, 3)
    assert.is_true(v:minComponent() >= -2 and v:maxComponent() <= 3)
  end)

  it("is written readably", function()
    assert.equal("Vec3(0.1, -0.5, 1e+20)", tostring(kel.Vec3(0.1, -0.5, 1e20)))
    assert.equal("0.333333 2 3e+10", kel.printVec3(kel.Vec3(1 / 3, 2, 3e10)))
  end)

  it("refuses wrong and surplus arguments", function()
    local v = kel.Vec3(1, 2, 3)
    refuses("length", v.length, v, 1)
    refuses(".add", function() return v + 1 end)
    refuses("distance", v.distance, v, nil)
    refuses("new", kel.Vec3, "a", 1, 2)
    fails("invalid 'self' in function 'length'", v.length, nil)
  end)
end)

describe("kel.Vec3f", function()
  it("is made from a table of three numbers", function()
    assert.same({1, 2, 3}, elements(kel.Vec3f({1, 2, 3})))
    assert.same({1, 2, 3}, elements(kel.Vec3f(kel.Vec2(1, 2), 3)))
    refuses("new", kel.Vec3f, {1, 2, "x"})
    refuses("new", kel.Vec3f, {1, 2, 3}, 4)
    assert.is_userdata(kel.Vec3f(1, 2, 3):ptr())
  end)

  it("gives constant results of operators", function()
    local a, b = kel.Vec3f(1, 2, 3), kel.Vec3f(0, 0, 1)
    for expected, result in pairs {["1 2 4"] = a + b, ["1 2 2"] = a - b, ["2 4 6"] = a * 2, ["0.5 1 1.5"] = a / 2,
                                   ["-1 -2 -3"] = -a} do
      assert.equal("const kel::Vec3f", tolua.type(result))
      assert.equal(expected, table.concat(elements(result), " "))
    end
    refuses("normalize", (a + b).normalize, a + b)
    assert.equal("kel::Vec3f", tolua.type(kel.Vec3f(a + b)))
  end)

  it("calculates in single precision", function()
    assert.not_equal(0.1, float(0.1))
    assert.equal(16777216, kel.Vec3f(16777216, 1, 1):length())
    assert.equal(float(math.sqrt(3)), kel.Vec3f(1):length())
  end)

  it("lacks what only kel.Vec3 has", function()
    for _, name in ipairs {"at", "normal", "mul", "div"} do assert.is_nil(kel.Vec3f[name]) end
    refuses("set", kel.Vec3f.set, kel.Vec3f(), 1, 2)
    assert.is_table(kel.Vec3i)
    assert.is_nil(kel.Vec3u.new)
  end)
end)

describe("kel.Vec2", function()
  it("calculates like kel.Vec3", function()
    local a, b = kel.Vec2(3, 4), kel.Vec2(1)
    assert.same({7, 5, 13}, {a * b, a:length(), a:distance2(b)})
    for expected, v in pairs {["4 5"] = a + b, ["2 3"] = a - b, ["-3 -4"] = -a, ["6 8"] = a * 2, ["1.5 2"] = a / 2} do
      assert.equal(expected, table.concat(elements(v), " "))
    end
    assert.equal(5, a:normalize())
    a:clamp(kel.Vec2(0, 0), kel.Vec2(0.1, 0.2))
    assert.equal("Vec2(0.1, 0.2)", tostring(a))
  end)
end)

describe("kel.Vec2i and kel.Vec2u", function()
  it("give the factor of a product again in a direct call, cut to 32 bits", function()
    local v = kel.Vec2i(2, -3)
    local product, factor, nothing = v[".mul"](v, 2.75)
    assert.same({4, -6}, elements(product))
    assert.same({2}, {factor, nothing})
    assert.equal("const kel::Vec2i", tolua.type(product))
    assert.same({6, -9}, elements(v * (2 ^ 32 + 3)))
    assert.same({2 ^ 32 - 1, 0}, elements(kel.Vec2u(1, 0) * -1))
  end)

  it("hold 64-bit integers, which wrap", function()
    assert.same({-2 ^ 40, 2 ^ 52}, elements(kel.Vec2i(-2 ^ 40, 2 ^ 52)))
    assert.same({1, -1}, elements(kel.Vec2i(1.9, -1.9)))
    assert.equal(2 ^ 64, kel.Vec2u(-1):x())
    assert.same({3, -5}, elements(kel.Vec2i(1, 2) - kel.Vec2i(-2, 7)))
    assert.is_true(kel.Vec2u(1, 2) == kel.Vec2u(1, 2))
    assert.equal("Vec2i(1, -2)", tostring(kel.Vec2i(1, -2)))
    local low = kel.Vec2i(-2 ^ 63, -2 ^ 62)
    assert.same({-2 ^ 63, 2 ^ 62}, elements(-low))
    assert.same({0, -2 ^ 63}, elements(low + low))
    assert.same({0, 0}, elements(low * 4))
    for _ = 1, 50 do
      local v = kel.Vec2u.random(3, 5)
      assert.is_true(v:x() >= 3 and v:x() <= 5 and v:x() % 1 == 0)
    end
  end)
end)

describe("kel.Vec4 and kel.Vec4f", function()
  for name, three in pairs {Vec4 = "Vec3", Vec4f = "Vec3f"} do
    it(name.." calculates in four elements", function()
      local class = kel[name]
      local a = class(1, 2, 3, 4)
      assert.same({1, 2, 3, 9}, elements(class(kel[three](1, 2, 3), 9)))
      assert.same({30, 4, 4}, {a * class(a), class(2):length(), a:at(3)})
      assert.same({2, 4, 6, 8}, elements(a + a))
      assert.same({0.5, 1, 1.5, 2}, elements(a / 2))
      a:set(7, 3)
      assert.equal(name.."(1, 2, 3, 7)", tostring(a))
      fails("out of range", a.at, a, 4)
      assert.equal("const kel::"..name, tolua.type(-a))
      for _, missing in ipairs {"random", "distance", "clamp"} do assert.is_nil(class[missing]) end
    end)
  end
end)
