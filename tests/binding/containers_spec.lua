local function results(...) return {n = select("#", ...), ...} end

local shell = require("tests.shell")

local NUMBERS = [[Real Real64 Real32 Int Int64 Int8 Int16 Int32 UInt UInt64 UInt8 UInt16 UInt32]]
local OBJECTS = [[Vec2 Vec2d Vec2f Vec2i Vec2i64 Vec2i32 Vec2u Vec2u64 Vec2u32 Vec3 Vec3d Vec3f Vec3i Vec3i64 Vec3i32 Vec3u
                  Vec3u64 Vec3u32 Vec4 Vec4d Vec4f Vec4i Vec4i64 Vec4i32 Vec4u Vec4u64 Vec4u32 Matrix3x3 Matrix3x3d
                  Matrix3x3f Matrix4x4 Matrix4x4d Matrix4x4f AffineMatrix4x4 AffineMatrix4x4d AffineMatrix4x4f Quat Quat64
                  Quat32 Index Uuid]]

describe("The vectors of values", function()
  -- every class does the same with its own elements
  local function grows(class, a, b, same)
    local v = class()
    assert.same({0, true}, {v:size(), v:empty()})
    v:push_back(a)
    v:push_back(b)
    assert.same({2, false}, {v:size(), v:empty()})
    same(a, v:at(0))
    same(b, v:at(1))
    same(a, v:front())
    same(b, v:back())
    v:reserve(100)
    v:resize(1)
    same(a, v:back())
    v:clear()
    assert.equal(0, v:size())
    assert.error_matches(function() v:front() end, "index of an element is out of range")
    assert.error_matches(function() v:back() end, "index of an element is out of range")
    assert.equal(3, class(3):size())
    assert.equal(0, class(0):size())
    assert.error_matches(function() v:push_back({}) end, "error in function 'push_back'%.")
    assert.error_matches(function() v.size(nil) end, "invalid 'self' in function 'size'")
  end

  it("give and take numbers", function()
    for stem in NUMBERS:gmatch "%S+" do grows(kel[stem.."Vector"], 7, 9, assert.equal) end
    grows(kel.BoolVector, true, false, assert.equal)
    grows(kel.StringVector, "a", "long enough not to be kept inside", assert.equal)
  end)

  it("give and take copies of objects", function()
    for stem in OBJECTS:gmatch "%S+" do
      local class = kel[stem.."Vector"]
      local element = class(1):at(0)
      assert.equal("kel::"..stem, tolua.type(element))
      grows(class, element, class(1):at(0), function(expected, given)
        assert.equal(tolua.type(expected), tolua.type(given))
      end)
    end
    grows(kelData.EntityPtrVector, kelData.EntityPtrVector(1):at(0), kelData.EntityPtrVector(1):at(0), function(_, given)
      assert.equal("kelData::EntityPtr", tolua.type(given))
    end)
    local v = kel.Vec3Vector()
    v:push_back(kel.Vec3(1, 2, 3))
    local copy = v:at(0)
    copy:set(0, 0, 0)
    assert.equal("Vec3(1, 2, 3)", tostring(v:at(0)))
    v = nil
    collectgarbage()
    assert.equal("Vec3(0, 0, 0)", tostring(copy))
  end)

  it("have types of their own though the elements are the same", function()
    assert.equal("kel::Real64Vector", tolua.type(kel.Real64Vector()))
    assert.error_matches(function() kel.RealVector.size(kel.Real64Vector()) end, "error in function 'size'%.")
    assert.error_matches(function() kel.Vec2dVector():push_back(kel.Vec2()) end, "error in function 'push_back'%.")
    assert.error_matches(function() kel.Vec2Vector():push_back(nil) end, "error in function 'push_back'%.")
    assert.error_matches(function() kel.RealVector():push_back(nil) end, "error in function 'push_back'%.")
    assert.equal("userdata", type(kel.IndexVector(1):at(0)))
    assert.equal("number", type(kel.UInt32Vector(1):at(0)))
    local indices, other = kel.IndexVector(2), kel.IndexVector()
    other:push_back(indices:at(1))
    assert.equal(1, other:size())
  end)

  it("convert numbers to the element's width", function()
    local function through(class, number)
      local v = class()
      v:push_back(number)
      return v:at(0)
    end
    assert.equal(-56, through(kel.Int8Vector, 200))
    assert.equal(1, through(kel.UInt8Vector, 257))
    assert.equal(65535, through(kel.UInt16Vector, -1))
    assert.equal(2, through(kel.IntVector, 2.9))
    assert.equal(2 ^ 40, through(kel.IntVector, 2 ^ 40))
    assert.equal(2 ^ 64 - 2048, through(kel.UInt64Vector, 2 ^ 64 - 2048))
    assert.equal(0.5, through(kel.Real32Vector, 0.5))
    assert.are_not.equal(0.1, through(kel.Real32Vector, 0.1))
    assert.equal("", through(kel.StringVector, nil))
    assert.equal("12", through(kel.StringVector, 12))
  end)

  it("fill with default elements", function()
    local matrices = kel.Matrix3x3Vector()
    matrices:resize(2)
    assert.equal(tostring(kel.Matrix3x3()), tostring(matrices:at(1)))
    local rotations = kel.QuatVector()
    rotations:resize(3)
    assert.equal("Quat(0, 0, 0, 1)", tostring(rotations:at(2)))
    assert.equal(tostring(kel.AffineMatrix4x4()), tostring(kel.AffineMatrix4x4Vector(1):front()))
    assert.equal("", kel.StringVector(1):at(0))
    assert.is_false(kel.BoolVector(1):at(0))
  end)

  it("read counts by truncation and wrap", function()
    local v = kel.RealVector(2.9)
    assert.equal(2, v:size())
    v:resize(2 ^ 32 + 5)
    assert.equal(5, v:size())
    v:push_back(3)
    assert.equal(3, v:at(2 ^ 32 + 5.5))
    local made = results(kel.RealVector:new(2))
    assert.equal(1, made.n)
    tolua.takeownership(made[1])
  end)

  it("drive the collector by what they hold", function()
    local function residentPages() return tonumber(io.open("/proc/self/statm"):read("*a"):match("%d+ (%d+)")) end
    local before = residentPages()
    for _ = 1, 100 do kel.RealVector(1e6) end
    assert.is_true((residentPages() - before) * 4096 < 40 * 8e6)
  end)

  it("end the program for a bad index, with its place", function()
    for chunk, message in pairs {
      ["kel.RealVector(3):at(3)"] =
        "%[include/kel/Vector:%d+%] kelVerify failed: `index < m_size', Array index 3 is out of bounds, current size is 3\n",
      ["pcall(function() kel.StringVector():at(-1) end)"] = "Array index 4294967295 is out of bounds, current size is 0\n",
      ["kel.RigidBodyRefSetVector():at(7)"] = "Array index 7 is out of bounds, current size is 0\n",
    } do
      local run = shell.kel(shell.script(chunk))
      assert.equal(134, run.status)
      assert.matches(message, run.err)
      assert.matches("stack traceback:", run.err)
    end
  end)
end)

describe("The arrays of pointers", function()
  it("edit without tests", function()
    local bodies = {}
    local v = kel.RigidBodyPtrVector(1)
    assert.is_nil(v:at(0))
    v:clear()
    for i = 1, 5 do
      bodies[i] = kel.RigidBody()
      v:push_back(bodies[i])
      assert.equal(1, bodies[i]:getReferenceCount())
    end
    v:erase(1)
    v:erase(1, 3)
    assert.same({2, true, true}, {v:size(), v:at(0) == bodies[1], v:at(1) == bodies[5]})
    v:pop_back()
    assert.is_true(v:back() == bodies[1] and v:front() == bodies[1])
    v:resize(3)
    assert.is_nil(v:back())
    v:push_back(nil)
    assert.equal(4, v:size())
  end)

  it("let an empty size wrap, and no script past the buffer", function()
    for _, shrink in ipairs {function(v) v:pop_back() end, function(v) v:erase(0) end} do
      local v = kel.RigidBodyPtrVector()
      shrink(v)
      assert.equal(2 ^ 64, v:size()) -- 2^64 - 1, which no Lua number is
      local body = kel.RigidBody()
      for _, call in ipairs {
        function() v:at(0) end, function() v:front() end, function() v:back() end, function() v:push_back(body) end,
        function() v:reserve(10) end, function() v:resize(10) end, function() v:erase(0) end, function() v:erase(4, 2) end,
      } do
        assert.error_matches(call, "index of an element is out of range")
      end
      v:clear()
      v:push_back(body)
      assert.is_true(v:at(0) == body)
      assert.error_matches(function() v:erase(100, 0) end, "index of an element is out of range")
      v:erase(50, 20)
      assert.equal(31, v:size())
      assert.error_matches(function() v:at(30) end, "index of an element is out of range")
    end
  end)

  it("know which objects are gone", function()
    local v, set = kel.RigidBodyPtrVector(), kel.RigidBodyPtrSetVector()
    local body = kel.RigidBody()
    v:push_back(body)
    set:push_back(body)
    assert.is_true(set:contains(body))
    body = nil
    collectgarbage()
    collectgarbage()
    for _, call in ipairs {function() v:at(0) end, function() v:back() end, function() set:front() end} do
      assert.error_matches(call, "the object of this element is gone")
    end
    assert.is_false(set:contains(nil))
    assert.equal(1, v:size())
  end)

  it("are there for other objects", function()
    assert.equal(2, kel.ConstraintPtrVector(2):size())
    assert.is_nil(kel.ConstraintPtrVector(2):back())
    assert.is_nil(kel.MaterialPtrVector(1):at(0))
    assert.is_nil(kel.ContactMaterialPtrVector(1):at(0))
    local frame = kel.AffineMatrix4x4()
    local v = kel.AffineMatrix4x4PtrVector()
    v:push_back(frame)
    v:front():setTranslate(1, 2, 3)
    assert.equal("Vec3(1, 2, 3)", tostring(frame:getTranslate()))
  end)
end)

describe("The arrays of references", function()
  it("count", function()
    local a, b = kel.RigidBody(), kel.RigidBody()
    local v = kel.RigidBodyRefVector()
    assert.equal(0, v:find(a))
    assert.is_false(v:findAndErase(a, true))
    for _, body in ipairs {a, a, b} do v:push_back(body) end
    assert.equal(3, a:getReferenceCount())
    assert.same({0, 2, 3}, {v:find(a), v:find(b), v:find(kel.RigidBody())})
    assert.is_true(v:findAndErase(a, true))
    assert.same({1, 1}, {v:size(), a:getReferenceCount()})
    assert.is_true(v:at(0) == b)
    v:push_back(b)
    assert.is_true(v:findAndErase(b))
    assert.same({1, 2}, {v:size(), b:getReferenceCount()})
    v:clear()
    assert.equal(1, b:getReferenceCount())
  end)

  it("take nil, and ask for what nobody owns without destroying it", function()
    local v = kel.RigidBodyRefVector(2)
    assert.is_nil(v:front())
    assert.equal(0, v:find(nil))
    local body = kel.RigidBody:new()
    assert.equal(2, v:find(body))
    assert.is_false(v:findAndErase(body))
    v:push_back(body)
    assert.equal(1, body:getReferenceCount())
    v:clear()
    assert.error_matches(function() body:getReferenceCount() end, "invalid 'self'")
  end)

  it("let go in any order", function()
    local function drop(first, second)
      local held = {body = kel.RigidBody("body"), v = kel.RigidBodyRefVector(), set = kel.RigidBodyRefSetVector()}
      held.v:push_back(held.body)
      held.set:push_back(held.body)
      held.set:push_back(held.body)
      assert.equal(4, held.body:getReferenceCount())
      local watch = held.set:at(0)
      held[first] = nil
      collectgarbage()
      collectgarbage()
      held[second] = nil
      collectgarbage()
      collectgarbage()
      assert.is_true(watch:getReferenceCount() >= 1)
      assert.equal("body", watch:getName())
    end
    for _, order in ipairs {{"v", "set"}, {"set", "v"}, {"body", "v"}, {"v", "body"}, {"body", "set"}, {"set", "body"}} do
      drop(order[1], order[2])
    end
  end)
end)

describe("The sets", function()
  it("keep the first place, and hold two references", function()
    local a, b = kel.RigidBody(), kel.RigidBody()
    local set = kel.RigidBodyRefSetVector()
    set:push_back(a)
    set:push_back(b)
    set:push_back(a)
    assert.same({2, 3, 3}, {set:size(), a:getReferenceCount(), b:getReferenceCount()})
    assert.is_true(set:front() == a and set:back() == b)
    set:clear()
    assert.same({0, 1, 1}, {set:size(), a:getReferenceCount(), b:getReferenceCount()})
    assert.is_true(set:empty())
    assert.error_matches(function() set:back() end, "index of an element is out of range")
  end)

  it("that scripts only see are not made by them", function()
    for _, class in ipairs {kel.RigidBodyRefSet, kel.ConstraintRefSet, kelSDK.AssemblyRefSet} do
      assert.is_nil(rawget(class, "new"))
      assert.equal("table", type(class.const_iterator))
      assert.equal("table", type(class.iterator))
    end
    assert.is_function(kel.ConstraintRefSet.empty)
    assert.is_nil(kel.RigidBodyRefSet.empty)
    local set = kel.RigidBodyRefSet
    assert.error_matches(function() set.Begin(nil) end, "invalid 'self' in function 'begin'")
    assert.error_matches(function() set.End(nil) end, "invalid 'self' in function 'end'")
    assert.error_matches(function() set.Begin(1) end, "error in function 'Begin'%.")
    assert.error_matches(function() set.End(1) end, "error in function 'End'%.")
  end)
end)

describe("The small containers of numbers", function()
  it("keep ranges in order", function()
    local indexed = kel.IndexedRangeReal(3, kel.RangeReal(2, 1))
    assert.same({3, 1, 2}, {indexed.index, indexed.range:lower(), indexed.range:upper()})
    indexed.range = kel.RangeReal(9, 4)
    indexed.index = 7.9
    assert.same({7, 4, 9}, {indexed.index, indexed.range:lower(), indexed.range:upper()})
    assert.error_matches(function() indexed.range = nil end, "invalid type in variable assignment%.")
    assert.is_nil(rawget(kel.SparseRangeReal, "new"))
  end)

  it("are empty at first", function()
    for _, class in ipairs {kel.RealPairVector, kelRender.ColorVector} do
      local v = class()
      v:clear()
      assert.same({0, true}, {v:size(), v:empty()})
    end
    assert.is_nil(rawget(kel.RealPair, "new"))
  end)
end)
