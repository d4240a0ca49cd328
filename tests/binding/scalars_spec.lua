local support = require("tests.binding.support")
local nan = 0 / 0

describe("scalar helpers", function()
  it("interpolate, clamp, tell the sign and clear it", function()
    for _, case in ipairs {
      {3, kel.lerp(1, 3, 2)}, {2, kel.lerp(1, 3, 0.5)}, {3, kel.clamp(5, 0, 3)}, {1, kel.sign(0)}, {-1, kel.sign(-1e-300)},
      {2, kel.absolute(-2)}, {1 / 0, 1 / kel.absolute(-0)},
      {kel.logInterpolate(7, 50, 1), kel.logInterpolate(7, 50, 1 - 1e-9)}, -- in single precision
    } do
      assert.equal(case[1], case[2])
    end
    assert.near(10, kel.logInterpolate(1, 100, 0.5), 1e-12)
    for _ = 1, 100 do
      local r = kel.random(-1, 2)
      assert.is_true(r >= -1 and r <= 2)
    end
  end)
end)

describe("kel.equivalent", function()
  local function tolerates(expected, a, b, epsilon)
    assert.equal(expected, kel.equivalent(a, b))
    assert.is_true(kel.equivalent(a, b, epsilon or 1e-5))
  end

  it("has a smaller tolerance for numbers and matrices than for vectors and quaternions", function()
    tolerates(true, 1, 1 + 5e-10)
    tolerates(false, 1, 1 + 5e-7)
    for _, class in ipairs {kel.Vec2, kel.Vec3, kel.Vec4} do
      tolerates(true, class(0), class(5e-7))
      tolerates(false, class(0), class(5e-6))
    end
    tolerates(true, kel.Quat(0, 0, 0, 1), kel.Quat(5e-7, 0, 0, 1))
    tolerates(false, kel.Quat(0, 0, 0, 1), kel.Quat(0, 0, 0, -1), 3)
    tolerates(false, kel.AffineMatrix4x4(), kel.AffineMatrix4x4.translate(5e-7, 0, 0))
    for _, bad in ipairs {nan, kel.Vec3(0, nan, 0)} do assert.is_false(kel.equivalent(bad, bad)) end
  end)

  it("compares the six elements of a symmetric matrix", function()
    local a = kel.SPDMatrix3x3()
    tolerates(true, a, kel.SPDMatrix3x3(1, 0, 5e-10, 0, 1, 0, 0, 0, 1))
    tolerates(false, a, kel.SPDMatrix3x3(1, 0, 0, 0, 1, 5e-7, 0, 0, 1))
    assert.is_false(kel.equivalent(a, kel.SPDMatrix3x3(0, 0, 0, 0, 1, 0, 0, 0, 1), 0.5))
  end)
end)

describe("kel.absolute", function()
  it("widens float vectors, and takes double ones only by their other names", function()
    local v = kel.absolute(kel.Vec3f(-1, 0.1, -3))
    assert.equal("kel::Vec3", tolua.type(v))
    assert.same({1, kel.Vec3f(0.1):x(), 3}, support.elements(v))
    assert.equal("kel::Vec4", tolua.type(kel.absolute(kel.Vec4f(-1))))
    v = kel.absolute(tolua.cast(kel.Vec2(-1, 2), "kel::Vec2d"))
    assert.same({"Vec2(1, 2)", "kel::Vec2"}, {tostring(v), tolua.type(v)})
    for _, class in ipairs {kel.Vec2, kel.Vec3, kel.Vec4} do support.refuses("absolute", kel.absolute, class(1)) end
  end)
end)

describe("solve modes", function()
  it("have their own numbers for constraints and friction models", function()
    local C, F = kel.Constraint, kel.FrictionModel
    assert.same({1, 4, 5}, {C.DIRECT, C.ITERATIVE, C.DIRECT_AND_ITERATIVE})
    assert.same({0, 1, 2, 3, 4}, {F.NOT_DEFINED, F.DIRECT, F.ITERATIVE, F.SPLIT, F.DIRECT_AND_ITERATIVE})
  end)
end)
