local support = require("tests.binding.support")
local near, fails, refuses = support.near, support.fails, support.refuses
local nan = 0 / 0
local BAD_ELEMENT, BAD_ROW = "index of a matrix element is out of range", "index of a matrix row or column is out of range"

local function elements(m)
  local list = {}
  for row = 0, 2 do
    for column = 0, 2 do list[#list + 1] = m:at(row, column) end
  end
  return list
end

-- what the classes of full and of symmetric matrices have in common
local function behavesAsMatrix(class, sample)
  it("adds, subtracts and scales, giving the number again in a direct call", function()
    local a, b = sample(), class(kel.Vec3(1, 2, 3))
    local sum, difference, scaled = class(), class(), class()
    sum:add(a, b)
    difference:sub(a, b)
    assert.same({elements(a + b), elements(a - b)}, {elements(sum), elements(difference)})
    assert.same({a:at(1, 1) + 2, a:at(1, 1) - 2, a:at(0, 1)}, {sum:at(1, 1), difference:at(1, 1), difference:at(0, 1)})
    local product, factor, nothing = a[".mul"](a, 2)
    assert.same({elements(a * 2), 2}, {elements(product), factor})
    assert.is_nil(nothing)
    assert.equal(49, (select(2, a[".div"](a, 49))))
    assert.equal(5 * (1 / 49), (class() * 5 / 49):at(0, 0))
    assert.equal(3, scaled:mult(a, 3))
    assert.same(elements(a * 3), elements(scaled))
  end)

  it("tells what it is, and copies", function()
    local m = class()
    assert.is_true(m:isIdentity() and m:isValid() and not m:isNaN())
    m:set(kel.Vec3(1, nan, 1))
    assert.is_true(m:isNaN() and not m:isValid())
    m:makeIdentity()
    assert.is_true(m:isIdentity())
    class(m):set(kel.Vec3(1, 1, 1 + 1e-15))
    assert.is_true(m:isIdentity())
    refuses("new", class, "x")
  end)

  it("has a determinant and an inverse", function()
    local m, v = sample(), kel.Vec3(1, 2, 3)
    assert.equal(24, class(kel.Vec3(2, 3, 4)):determinant())
    near(kel.Vec3(2, 3, 4), class(kel.Vec3(2, 3, 4)):getDiagonal())
    near(v, m:inverse() * (m * v))
    near(v, m:inverse():postMult(m:postMult(v)))
    near(v, m:inverse():preMult(m:preMult(v)))
  end)
end

describe("kel.Matrix3x3", function()
  local function sample() return kel.Matrix3x3(2, 1, 0.5, -1, 3, 0.25, 0.125, 2, 4) end
  behavesAsMatrix(kel.Matrix3x3, sample)

  it("is made from other forms", function()
    local q, v, m = kel.Quat(0.5, kel.Vec3(1, 2, 3)), kel.Vec3(4, 5, 6), kel.Matrix3x3()
    near(q * v, kel.Matrix3x3(q):preMult(v))
    near(q * v, kel.Matrix3x3(kel.AffineMatrix4x4(q, v)):preMult(v))
    assert.same({1, 2, 3, 2, 5, 6, 3, 6, 9}, elements(kel.Matrix3x3(kel.SPDMatrix3x3(1, 2, 3, 0, 5, 6, 0, 0, 9))))
    m:set(q)
    assert.same(elements(kel.Matrix3x3(q)), elements(m))
    m:set(1, 2, 3, 4, 5, 6, 7, 8, 9)
    assert.same({1, 4, 7, 2, 5, 8, 3, 6, 9}, elements(m:transpose()))
    assert.equal("Matrix3x3({1, 2, 3}, {4, 5, 6}, {7, 8, 9})", tostring(m))
    assert.equal("AffineMatrix4x4({1, 2, 3, 0}, {4, 5, 6, 0}, {7, 8, 9, 0}, {0, 0, 0, 1})",
      tostring(m[".kel::AffineMatrix4x4"](m)))
  end)

  it("multiplies vectors as rows and as columns, and matrices", function()
    local a, b, v = sample(), kel.Matrix3x3(1, 2, 3, 4, 5, 6, 7, 8, 10), kel.Vec3(1, 2, 3)
    near(a:transpose() * v, a:preMult(v))
    near(a:postMult(v), a * v)
    near(kel.cross(v, kel.Vec3(7, 8, 9)), kel.Matrix3x3.crossMatrix(v) * kel.Vec3(7, 8, 9))
    near(a * (b * v), (a * b) * v)
    local c, d = kel.Matrix3x3(a), kel.Matrix3x3(a)
    c:preMult(b)
    d:postMult(b)
    assert.same({elements(b * a), elements(a * b)}, {elements(c), elements(d)})
    c:mult(a, b)
    c:mult(c, c)
    assert.same(elements(a * b * (a * b)), elements(c))
  end)

  it("is diagonal without tolerance", function()
    local m = kel.Matrix3x3(kel.Vec3(1, 2, 3))
    assert.is_true(m:isDiagonal())
    m:set(1e-300, 2, 0)
    assert.is_false(m:isDiagonal())
  end)

  it("stays in its memory", function()
    local m = kel.Matrix3x3(1, 2, 3, 4, 5, 6, 7, 8, 9)
    m:set(10, 2, 1)
    assert.same({10, 0, 4}, {m:at(2, 1), m:at(0, 3), m:at(0, 4)})
    for _, bad in ipairs {{3, 0}, {0, 12}, {-1, 0}, {2 ^ 30, 0}, {nan, -1}} do
      fails(BAD_ELEMENT, m.at, m, bad[1], bad[2])
      fails(BAD_ELEMENT, m.set, m, 0, bad[1], bad[2])
    end
  end)
end)

describe("kel.SPDMatrix3x3", function()
  local function sample() return kel.SPDMatrix3x3(4, 1, 0.5, 0, 3, 0.25, 0, 0, 2) end
  behavesAsMatrix(kel.SPDMatrix3x3, sample)

  it("ignores the lower triangle", function()
    local m = kel.SPDMatrix3x3(1, 2, 3, 99, 5, 6, 98, 97, 9)
    local affine = kel.AffineMatrix4x4(1, 7, 3, 0, 0, 5, 6, 0, 0, 0, 9, 0, 0, 0, 0, 1)
    assert.equal("SPDMatrix3x3({1, 2, 3}, {2, 5, 6}, {3, 6, 9})", tostring(m))
    m:set(kel.Matrix3x3(1, 2, 3, 0, 5, 6, 0, 0, 10))
    assert.same({1, 2, 3, 2, 5, 6, 3, 6, 10}, elements(m))
    m:set(affine)
    assert.same({1, 7, 3, 7, 5, 6, 3, 6, 9}, elements(m))
    assert.same(elements(m), elements(kel.SPDMatrix3x3(affine)))
    for _, bad in ipairs {{3, 3}, {0, 6}, {-1, 0}, {-1, -1}, {-1, 2}} do fails(BAD_ELEMENT, m.at, m, bad[1], bad[2]) end
  end)

  it("does not tell rows from columns", function()
    local m, v = sample(), kel.Vec3(1, 2, 3)
    assert.is_true(m * v == m:preMult(v) and m * v == m:postMult(v))
    near(kel.Matrix3x3(m) * v, m * v)
    assert.is_false(kel.SPDMatrix3x3(1, 2, 0, 0, 1, 0, 0, 0, 1):isValid())
  end)
end)

describe("kel.OrthoMatrix3x3", function()
  it("is not there until a native caller opens it", function()
    assert.is_nil(kel.OrthoMatrix3x3)
    refuses("get", kel.Quat.get, kel.Quat(), kel.Matrix3x3())
    local library = os.getenv("KEL_LIB").."/libkel_luaplugin.so"
    assert(package.loadlib(library, "_Z29tolua_kel_OrthoMatrix3x3_openP9lua_State"))()
    assert.is_table(kel.OrthoMatrix3x3)
  end)

  local function samples()
    local q = kel.Quat(0.7, kel.Vec3(1, -2, 3))
    return q, kel.OrthoMatrix3x3(q), kel.Vec3(4, 5, 6)
  end

  it("rotates rows and turns columns back", function()
    local q, m, v = samples()
    near(q * v, m:preMult(v))
    near(v, m:postMult(m:preMult(v)))
    near(m:postMult(v), m * v)
    near(v, m:inverse():preMult(m:preMult(v)))
    near(v, m:transpose():preMult(m:preMult(v)))
    local twice, other = m * m, kel.OrthoMatrix3x3(m)
    near(q * (q * v), twice:preMult(v))
    other:preMult(m)
    assert.is_true(other == twice)
    other:mult(m, m)
    other:postMult(kel.OrthoMatrix3x3())
    assert.is_true(other == twice)
  end)

  it("goes through all forms of a rotation", function()
    local q, m, v = samples()
    local angles, affine = kel.EulerAngles(m, kel.EulerConvention.ZXYr), kel.AffineMatrix4x4(m, v)
    local back, into = kel.OrthoMatrix3x3(), kel.Quat()
    assert.is_true(angles:get(back))
    near(q * v, back:preMult(v))
    assert.equal(back, back:set(q))
    q:get(back)
    assert.is_true(back == m)
    affine:get(back)
    assert.is_true(back == m)
    assert.equal(back, back:set(angles))
    m:get(into)
    m:get(angles)
    for _, rotated in ipairs {
      back:preMult(v), into * v, kel.Quat(angles) * v, kel.OrthoMatrix3x3(angles):preMult(v),
      kel.Quat(kel.EulerAngles(angles:set(m))) * v, kel.Quat():set(m) * v, m:get() * v, affine:transformVector(v),
      kel.AffineMatrix4x4(m):transformPoint(v), kel.AffineMatrix4x4():set(m):transformPoint(v),
      kel.AffineMatrix4x4.translate(v):setRotate(m):transformPoint(v) - v,
    } do
      near(q * v, rotated)
    end
  end)

  it("sets rotations, rows and columns", function()
    local q, m, v = samples()
    for _, arguments in ipairs {{0.5, 1, 2, 3}, {0.5, v}, {0.1, v, 0.2, kel.Vec3.X_AXIS(), 0.3, v}, {v, kel.Vec3(1)}} do
      m:setRotate(unpack(arguments))
      near(kel.Quat.rotate(unpack(arguments)) * v, m:preMult(v))
      assert.is_true(m == kel.OrthoMatrix3x3.rotate(unpack(arguments)))
    end
    m:setRotate(q)
    near(q * v, m:preMult(v))
    m:setIdentity()
    assert.is_true(m:isIdentity())
    m:setRow(1, kel.Vec3(0, 2, 0))
    m:setColumn(2, kel.Vec3(0, 0, 5))
    near(kel.Vec3(1, 2, 5), m:getScale())
    near(kel.Vec3(0, 2, 0), m:getRow(1))
    near(kel.Vec3(1, 0.5, 0.2), m:inverse():getScale())
    fails(BAD_ROW, m.getRow, m, 3)
    fails(BAD_ROW, m.setRow, m, -1, v)
    fails(BAD_ROW, m.setColumn, m, 3, v)
    assert.is_userdata(m:ptr())
    m:set(nan, 0, 0, 0, 1, 0, 0, 0, 1)
    assert.is_true(m:isNaN() and not m:isValid())
    assert.is_false(m[".eq"](m, m))
    m:set(kel.OrthoMatrix3x3())
    assert.equal("OrthoMatrix3x3({1, 0, 0}, {0, 1, 0}, {0, 0, 1})", tostring(m))
    local heap = kel.OrthoMatrix3x3:new()
    heap:delete()
    fails("invalid 'self' in function 'isNaN'", heap.isNaN, heap)
  end)
end)
