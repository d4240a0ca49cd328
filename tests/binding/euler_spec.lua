local C = kel.EulerConvention
local NAMES = {"XYZs", "ZYXr", "XYXs", "XYXr", "XZYs", "YZXr", "XZXs", "XZXr", "YZXs", "XZYr", "YZYs", "YZYr", "YXZs",
  "ZXYr", "YXYs", "YXYr", "ZXYs", "YXZr", "ZXZs", "ZXZr", "ZYXs", "XYZr", "ZYZs", "ZYZr"}

local function assertRotation(expected, actual)
  local same = kel.equivalent(expected, actual, 1e-13) or kel.equivalent(expected * -1, actual, 1e-13)
  assert.is_true(same, tostring(expected).." against "..tostring(actual))
end

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
    assert.equal(C.ZYXr, order:getConvention())
    assert.is_false(order:isStatic())
    assert.is_false(order:isRepeat())
    assert.is_false(order:isOdd())
    assert.same({0, 1, 2}, {order:i(), order:j(), order:k()})
    order = kel.EulerAngles.EulerOrder(C.ZYZs)
    assert.same({2, 1, 0}, {order:i(), order:j(), order:k()})
    assert.is_true(order:isStatic() and order:isRepeat() and order:isOdd())
    assert.is_true(kel.EulerAngles.EulerOrder():isStatic())
    assert.equal("EulerOrder(ZYZs)", tostring(order))
  end)

  it("takes any code", function()
    for _, code in ipairs {-1, 24, 31, 1e9, -2 ^ 31, 0 / 0, 1 / 0} do
      local order = kel.EulerAngles.EulerOrder(code)
      for _, axis in ipairs {order:i(), order:j(), order:k()} do assert.is_true(axis >= 0 and axis <= 2) end
    end
    assert.equal("EulerOrder(24)", tostring(kel.EulerAngles.EulerOrder(24)))
  end)
end)

describe("kel.EulerAngles", function()
  it("is made from a convention, angles, or a rotation", function()
    assert.equal("EulerAngles(0, 0, 0, XYZs)", tostring(kel.EulerAngles()))
    assert.equal("EulerAngles(0, 0, 0, ZXZr)", tostring(kel.EulerAngles(C.ZXZr)))
    assert.equal("EulerAngles(1, 2, 3, XYZs)", tostring(kel.EulerAngles(1, 2, 3)))
    assert.equal("EulerAngles(1, 2, 3, ZXZr)", tostring(kel.EulerAngles(1, 2, 3, C.ZXZr)))
    assert.equal("EulerAngles(1, 2, 3, YZXs)", tostring(kel.EulerAngles(kel.Vec3(1, 2, 3), C.YZXs)))
    local angles = kel.EulerAngles(0.1, 0.2, 0.3, C.YZXs)
    assert.equal(tostring(angles), tostring(kel.EulerAngles(angles)))
    local m = kel.AffineMatrix4x4(angles, kel.Vec3(1, 2, 3))
    for axis = 0, 2 do
      assert.near(angles[axis], kel.EulerAngles(kel.Quat(angles), C.YZXs)[axis], 1e-15)
      assert.near(angles[axis], kel.EulerAngles(m, C.YZXs)[axis], 1e-15)
    end
  end)

  it("reads and writes angles by index", function()
    local angles = kel.EulerAngles(1, 2, 3)
    angles[1] = 7
    assert.same({1, 7, 3}, {angles[0], angles[1], angles[2]})
    assert.same({1, 7, 3}, {angles:x(), angles:y(), angles:z()})
    assert.equal(7, angles[1.9])
    angles:set(4, 5, 6)
    angles:set(kel.Vec3(4, 5, 9))
    assert.equal(9, angles:z())
    for _, bad in ipairs {3, -1, 2 ^ 32 - 1} do
      assert.error_matches(function() return angles[bad] end, "index of an Euler angle is out of range")
      assert.error_matches(function() angles[bad] = 1 end, "index of an Euler angle is out of range")
    end
  end)

  it("keeps its convention unless it is given another one", function()
    local q = kel.Quat(0.5, kel.Vec3(1, 2, 3))
    local angles = kel.EulerAngles(C.ZXZr)
    assert.equal(angles, angles:set(q))
    assert.equal(C.ZXZr, angles:getOrder():getConvention())
    assertRotation(q, kel.Quat(angles))
    angles:set(kel.AffineMatrix4x4(q), C.XYZs)
    assert.equal(C.XYZs, angles:getOrder():getConvention())
    assertRotation(q, kel.Quat(angles))
  end)

  it("goes through quaternions and matrices in every convention", function()
    for code = C.FIRST, C.LAST - 1 do
      for _ = 1, 10 do
        local angles = kel.EulerAngles.random(kel.Vec3(-math.pi), kel.Vec3(math.pi), code)
        local q, m = kel.Quat(), kel.AffineMatrix4x4.translate(1, 2, 3)
        assert.is_true(angles:get(q))
        assert.is_true(angles:get(m))
        assert.is_true(kel.equivalent(kel.AffineMatrix4x4(q, kel.Vec3(1, 2, 3)), m))
        local back = kel.EulerAngles(code)
        q:get(back)
        assertRotation(q, kel.Quat(back))
        m:get(back)
        assertRotation(q, kel.Quat(back))
        assertRotation(q, kel.Quat(kel.EulerAngles(q:getAsEulerAngles(code), code)))
        assertRotation(q, kel.Quat():set(back))
        assertRotation(q, kel.AffineMatrix4x4():setRotate(back):getRotate())
      end
    end
  end)

  it("says when it is no rotation", function()
    local q = kel.Quat()
    assert.is_false(kel.EulerAngles(0, 1 / 0, 0):get(q))
    assert.is_true(q:x() ~= q:x())
  end)

  it("is random between bounds", function()
    for _ = 1, 50 do
      for axis = 0, 2 do
        assert.is_true(math.abs(kel.EulerAngles.random()[axis]) <= math.pi)
        assert.is_true(kel.EulerAngles.random(kel.Vec3(3))[axis] >= 3)
      end
      local z = kel.EulerAngles.random(kel.Vec3(1), kel.Vec3(1, 1, 2), C.YXZr)[2]
      assert.is_true(z >= 1 and z <= 2)
    end
  end)

  it("hands out its convention as a part of itself", function()
    local angles = kel.EulerAngles(1, 2, 3)
    local order = angles:getOrder()
    assert.equal("const kel::EulerAngles::EulerOrder", tolua.type(order))
    angles:set(kel.Quat(), C.ZYXr)
    assert.equal(C.ZYXr, order:getConvention())
    angles = nil
    collectgarbage()
    assert.equal(C.ZYXr, order:getConvention())
  end)
end)
