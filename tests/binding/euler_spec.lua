local support = require("tests.binding.support")
local fails, sameRotation = support.fails, support.sameRotation
local C = kel.EulerConvention
local NAMES = {"XYZs", "ZYXr", "XYXs", "XYXr", "XZYs", "YZXr", "XZXs", "XZXr", "YZXs", "XZYr", "YZYs", "YZYr", "YXZs",
  "ZXYr", "YXYs", "YXYr", "ZXYs", "YXZr", "ZXZs", "ZXZr", "ZYXs", "XYZr", "ZYZs", "ZYZr"}

describe("kel.EulerConvention", function()
  it("has the codes of 24 conventions", function()
    for i, name in ipairs(NAMES) do assert.equal(i - 1, C[name]) end
    assert.same({24, 0, -1, 0}, {C.LAST, C.FIRST, C.BAD, C.DEFAULT_CONVENTION})
    assert.is_nil(C.new)
  end)
end)

describe("kel.EulerAngles.EulerOrder", function()
  it("takes a code apart", function()
    local order = kel.EulerAngles.EulerOrder(C.ZYXr)
    assert.same({C.ZYXr, false, false, false, 0, 1, 2},
      {order:getConvention(), order:isStatic(), order:isRepeat(), order:isOdd(), order:i(), order:j(), order:k()})
    assert.is_true(kel.EulerAngles.EulerOrder():isStatic())
    assert.equal("EulerOrder(ZYZs)", tostring(kel.EulerAngles.EulerOrder(C.ZYZs)))
    for _, code in ipairs {-1, 24, 31, 1e9, -2 ^ 31, 0 / 0, 1 / 0} do
      assert.is_true(kel.EulerAngles.EulerOrder(code):k() <= 2)
    end
    assert.equal("EulerOrder(24)", tostring(kel.EulerAngles.EulerOrder(24)))
  end)
end)

describe("kel.EulerAngles", function()
  it("is made from a convention, angles, or a rotation", function()
    local angles = kel.EulerAngles(1, 2, 3, C.ZXZr)
    for expected, made in pairs {
      ["0, 0, 0, XYZs"] = kel.EulerAngles(), ["0, 0, 0, ZXZr"] = kel.EulerAngles(C.ZXZr),
      ["1, 2, 3, XYZs"] = kel.EulerAngles(1, 2, 3), ["1, 2, 3, YZXs"] = kel.EulerAngles(kel.Vec3(1, 2, 3), C.YZXs),
      ["1, 2, 3, ZXZr"] = kel.EulerAngles(angles), ["1, 2, 3, XYZr"] = kel.EulerAngles(1, 2, 3, C.XYZr),
    } do
      assert.equal("EulerAngles("..expected..")", tostring(made))
    end
    for _, rotation in ipairs {kel.Quat(angles), kel.AffineMatrix4x4(angles, kel.Vec3(1, 2, 3))} do
      for axis = 0, 2 do assert.near(angles[axis], kel.EulerAngles(rotation, C.ZXZr)[axis], 1e-14) end
    end
  end)

  it("reads and writes angles by index", function()
    local angles = kel.EulerAngles(1, 2, 3)
    angles[1] = 7
    assert.same({1, 7, 3, 7}, {angles[0], angles[1], angles[2], angles[1.9]})
    assert.same({1, 7, 3}, support.elements(angles))
    angles:set(4, 5, 6)
    assert.equal(6, angles:z())
    angles:set(kel.Vec3(4, 5, 9))
    assert.equal(9, angles:z())
    for _, bad in ipairs {3, -1, 2 ^ 32 - 1} do
      fails("index of an Euler angle is out of range", function() return angles[bad] end)
      fails("index of an Euler angle is out of range", function() angles[bad] = 1 end)
    end
  end)

  it("keeps its convention unless it is given another one", function()
    local q = kel.Quat(0.5, kel.Vec3(1, 2, 3))
    local angles = kel.EulerAngles(C.ZXZr)
    assert.equal(angles, angles:set(q))
    assert.equal(C.ZXZr, angles:getOrder():getConvention())
    sameRotation(q, kel.Quat(angles))
    angles:set(kel.AffineMatrix4x4(q), C.XYZs)
    assert.equal(C.XYZs, angles:getOrder():getConvention())
    sameRotation(q, kel.Quat(angles))
  end)

  it("goes through quaternions and matrices", function()
    local angles = kel.EulerAngles(0.1, 0.2, 0.3, C.YXZr)
    local q, m, back = kel.Quat(), kel.AffineMatrix4x4.translate(1, 2, 3), kel.EulerAngles(C.ZYZs)
    assert.is_true(angles:get(q))
    assert.is_true(angles:get(m))
    support.near(kel.AffineMatrix4x4(kel.Quat(angles), kel.Vec3(1, 2, 3)), m)
    m:get(back)
    sameRotation(q, kel.Quat(back))
    q:get(back)
    for _, rotation in ipairs {kel.Quat(back), kel.Quat():set(back), kel.AffineMatrix4x4():setRotate(back):getRotate(),
                               kel.Quat(kel.EulerAngles(q:getAsEulerAngles(C.XZXs), C.XZXs))} do
      sameRotation(q, rotation)
    end
    assert.is_false(kel.EulerAngles(0, 1 / 0, 0):get(q))
  end)

  it("is random between bounds", function()
    for _ = 1, 50 do
      assert.is_true(math.abs(kel.EulerAngles.random()[1]) <= math.pi and kel.EulerAngles.random(kel.Vec3(3))[0] >= 3)
      local angles = kel.EulerAngles.random(kel.Vec3(1), kel.Vec3(1, 1, 2), C.YXZr)
      assert.is_true(angles[0] == 1 and angles[2] >= 1 and angles[2] <= 2)
    end
  end)

  it("hands out its convention as a part of itself", function()
    local angles = kel.EulerAngles(1, 2, 3)
    local order = angles:getOrder()
    assert.equal("const kel::EulerAngles::EulerOrder", tolua.type(order))
    angles:set(kel.Quat(), C.ZYXr)
    angles = nil
    support.collect()
    assert.equal(C.ZYXr, order:getConvention())
  end)
end)
