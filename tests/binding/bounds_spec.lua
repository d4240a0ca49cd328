local support = require("tests.binding.support")
local results, near, refuses = support.results, support.near, support.refuses

describe("kel.Bound1", function()
  it("gives numbers by reference again", function()
    assert.equal(3, results(kel.Bound1:new_local(1, 2)).n)
    local bound = kel.Bound1(1, 3)
    assert.same({n = 2, true, 2.5}, results(bound:contains(2.5)))
    assert.same({n = 2, false, 3.5}, results(bound:contains(3.5)))
    local moved, way = bound:translate(2)
    assert.same({3, 5, 2}, {moved:min(), moved:max(), way})
  end)

  it("measures, grows and overlaps", function()
    local bound = kel.Bound1(1, 3)
    assert.same({1, 3, 2, 2}, {bound:min(), bound:max(), bound:size(), bound:mid()})
    assert.equal("Bound1(0, 4)", tostring(bound * 2))
    assert.is_true(bound:hasOverlap(kel.Bound1(3, 4)))
    assert.equal("Bound1(2, 3)", tostring(bound:calculateOverlap(kel.Bound1(2, 4))))
    bound:set(5, 4)
    assert.is_false(bound:isValid())
    assert.is_true(kel.Bound1():isValid())
  end)
end)

for size, vector in ipairs {false, kel.Vec2, kel.Vec3} do
  if vector then
    describe("kel.Bound"..size, function()
      local class = kel["Bound"..size]
      local function text(min, max) return ("Bound%d(%s, %s)"):format(size, tostring(vector(min)), tostring(vector(max))) end

      it("hands out its corners as constant views that keep it alive", function()
        local bound = class(vector(1), vector(3))
        local min, max = bound:min(), bound:max()
        assert.equal("const kel::Vec"..size, tolua.type(min))
        refuses("set", min.set, min, 0, 0, 0)
        bound:set(vector(5), vector(7))
        assert.is_true(min == vector(5) and max == vector(7))
        bound = nil
        support.collect()
        assert.is_true(min == vector(5))
      end)

      it("measures, grows, overlaps and moves", function()
        local bound = class(vector(1), vector(3))
        assert.is_true(class():isValid() and class():size() == vector())
        assert.is_false(class(vector(1), vector(0)):isValid())
        assert.is_true(bound:mid() == vector(2) and bound:size() == vector(2))
        assert.equal(text(0, 4), tostring(bound * 2))
        assert.is_true(bound:contains(vector(1)) and bound:contains(vector(3)))
        assert.is_false(bound:contains(vector(3 + 1e-15 * 4)))
        assert.is_true(bound:hasOverlap(class(vector(3), vector(4))))
        assert.is_false(bound:hasOverlap(class(vector(4), vector(5))))
        assert.equal(text(2, 3), tostring(bound:calculateOverlap(class(vector(2), vector(5)))))
        assert.equal(text(2, 4), tostring(bound:translate(vector(1))))
        support.fails("invalid 'self' in function 'operator*'", bound[".mul"], nil, 2)
        local view = tolua.cast(bound, "const kel::Bound"..size)
        refuses(".mul", view[".mul"], view, 2)
      end)
    end)
  end
end

describe("kel.Interval", function()
  it("is everything at first, and never reordered", function()
    assert.equal("Interval(-inf, inf)", tostring(kel.Interval()))
    local empty = kel.Interval(2, 1)
    assert.same({true, false, 2, 1, -1},
      {empty:isEmpty(), empty:hasElements(), empty:minValue(), empty:maxValue(), empty:getLength()})
  end)

  it("intersects", function()
    local interval = kel.Interval(0, 10)
    interval:intersectWith(kel.Interval(2, 20))
    interval:intersectWithRightUnbounded(3)
    interval:intersectWithLeftUnbounded(7)
    assert.equal("Interval(5, 7)", tostring(interval:computeOverlapWith(kel.Interval(5, 9))))
    assert.equal("Interval(3, 7)", tostring(interval))
    assert.same({true, false, true, false}, {interval:containsValue(3), interval:containsValue(7.5),
      interval:hasOverlapWith(kel.Interval(7, 9)), interval:hasOverlapWith(kel.Interval(6, 5))})
  end)
end)

describe("kel.RangeReal", function()
  it("is always in order, and gives the ends as they came", function()
    local range, a, b = kel.RangeReal:new_local(2, 1)
    assert.same({1, 2, 2, 1, 1}, {range:lower(), range:upper(), a, b, range:span()})
    assert.equal("RangeReal(-5, 5)", tostring(kel.RangeReal(-5)))
    assert.equal(1, results(kel.RangeReal:new_local(5)).n)
    assert.is_true(kel.RangeReal(1 / 0):isInfinite())
  end)
end)

describe("kel.Plane", function()
  it("is made from normals, points and numbers", function()
    for expected, plane in pairs {
      ["1, 2, 3, 4"] = kel.Plane(1, 2, 3, 4), ["1, 2, 4, 4"] = kel.Plane(kel.Vec4(1, 2, 4, 4)),
      ["1, 2, 5, 4"] = kel.Plane(kel.Vec3(1, 2, 5), 4), ["0, 2, 0, -2"] = kel.Plane(kel.Vec3(0, 2, 0), kel.Vec3(5, 1, 5)),
      ["0, 0, 1, -1"] = kel.Plane(kel.Vec3(0, 0, 1), kel.Vec3(1, 0, 1), kel.Vec3(0, 1, 1)), ["0, 0, 1, 0"] = kel.Plane(),
    } do
      assert.equal("Plane("..expected..")", tostring(plane))
    end
  end)

  it("changes, and moves with a transform by two names", function()
    local plane, other = kel.Plane(), kel.Plane()
    plane:setNormal(kel.Vec3(0, 3, 0))
    plane:setDistance(7)
    assert.is_true(plane:getNormal() == kel.Vec3(0, 3, 0))
    assert.same({7, 10}, {plane:getDistance(), plane:signedDistanceToPoint(kel.Vec3(0, 1, 0))})
    other:set(plane)
    assert.equal("Plane(0, 3, 0, 7)", tostring(other))
    other:set(kel.Vec4(1, 2, 3, 4))
    assert.equal("Plane(1, 2, 3, 4)", tostring(other))
    local m = kel.AffineMatrix4x4(kel.Quat(math.pi / 2, kel.Vec3.X_AXIS()), kel.Vec3(0, 5, 0))
    for _, name in ipairs {"calculatePlane", "calculateTransformedPlane"} do
      local moved = kel.Plane()[name](kel.Plane(), m)
      near(kel.Vec4(0, -1, 0, 5), kel.Vec4(moved:getNormal(), moved:getDistance()))
    end
  end)
end)
