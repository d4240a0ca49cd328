local shell = require("tests.shell")
local support = require("tests.binding.support")
local results, collect, fails, refuses = support.results, support.collect, support.fails, support.refuses
local OUTSIDE = "index of an element is out of range"

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
    same(a, v:front())
    same(b, v:back())
    v:reserve(100)
    v:resize(1)
    same(a, v:back())
    v:clear()
    fails(OUTSIDE, v.front, v)
    fails(OUTSIDE, v.back, v)
    assert.same({0, 3, 0}, {v:size(), class(3):size(), class(0):size()})
    refuses("push_back", v.push_back, v, {})
    fails("invalid 'self' in function 'size'", v.size, nil)
  end

  it("give and take numbers", function()
    for stem in NUMBERS:gmatch "%S+" do grows(kel[stem.."Vector"], 7, 9, assert.equal) end
    grows(kel.BoolVector, true, false, assert.equal)
    grows(kel.StringVector, "a", "long enough not to be kept inside", assert.equal)
  end)

  it("give and take copies of objects", function()
    local function sameType(expected, given) assert.equal(tolua.type(expected), tolua.type(given)) end
    for stem in OBJECTS:gmatch "%S+" do
      local class = kel[stem.."Vector"]
      assert.equal("kel::"..stem, tolua.type(class(1):at(0)))
      grows(class, class(1):at(0), class(1):at(0), sameType)
    end
    local pointer = kelData.EntityPtrVector(1):at(0)
    grows(kelData.EntityPtrVector, pointer, pointer, sameType)
    local v = kel.Vec3Vector()
    v:push_back(kel.Vec3(1, 2, 3))
    local copy = v:at(0)
    copy:set(0, 0, 0)
    assert.equal("Vec3(1, 2, 3)", tostring(v:at(0)))
    v = nil
    collect()
    assert.equal("Vec3(0, 0, 0)", tostring(copy))
  end)

  it("have types of their own though the elements are the same", function()
    assert.equal("kel::Real64Vector", tolua.type(kel.Real64Vector()))
    refuses("size", kel.RealVector.size, kel.Real64Vector())
    for vector, wrong in pairs {[kel.Vec2dVector()] = kel.Vec2(), [kel.Vec2Vector()] = false, [kel.RealVector()] = false} do
      refuses("push_back", vector.push_back, vector, wrong or nil)
    end
    local indices, other = kel.IndexVector(2), kel.IndexVector()
    other:push_back(indices:at(1))
    assert.same({"userdata", "number", 1}, {type(indices:at(1)), type(kel.UInt32Vector(1):at(0)), other:size()})
  end)

  it("convert numbers to the element's width", function()
    local function through(class, number)
      local v = class()
      v:push_back(number)
      return v:at(0)
    end
    for _, case in ipairs {
      {-56, kel.Int8Vector, 200}, {1, kel.UInt8Vector, 257}, {65535, kel.UInt16Vector, -1}, {2, kel.IntVector, 2.9},
      {2 ^ 40, kel.IntVector, 2 ^ 40}, {2 ^ 64 - 2048, kel.UInt64Vector, 2 ^ 64 - 2048}, {0.5, kel.Real32Vector, 0.5},
      {"", kel.StringVector, nil}, {"12", kel.StringVector, 12},
    } do
      assert.equal(case[1], through(case[2], case[3]))
    end
    assert.not_equal(0.1, through(kel.Real32Vector, 0.1))
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
  it("hold no references and edit without tests", function()
    local bodies, v = {}, kel.RigidBodyPtrVector(1)
    assert.is_nil(v:at(0))
    v:clear()
    for i = 1, 5 do
      bodies[i] = kel.RigidBody()
      v:push_back(bodies[i])
      assert.equal(1, bodies[i]:getReferenceCount())
    end
    v:erase(1)
    v:erase(1, 3)
    assert.is_true(v:size() == 2 and v:front() == bodies[1] and v:back() == bodies[5])
    v:pop_back()
    v:resize(3)
    v:push_back(nil)
    assert.equal(4, v:size())
    assert.is_nil(v:back())
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
        fails(OUTSIDE, call)
      end
      v:clear()
      v:push_back(body)
      assert.is_true(v:at(0) == body)
      fails(OUTSIDE, v.erase, v, 100, 0)
      v:erase(50, 20)
      assert.equal(31, v:size())
      fails(OUTSIDE, v.at, v, 30)
    end
  end)

  it("know which objects are gone", function()
    local v, set = kel.RigidBodyPtrVector(), kel.RigidBodyPtrSetVector()
    local body = kel.RigidBody()
    v:push_back(body)
    set:push_back(body)
    assert.is_true(set:contains(body))
    body = nil
    collect()
    for _, call in ipairs {function() v:at(0) end, function() v:back() end, function() set:front() end} do
      fails("the object of this element is gone", call)
    end
    assert.is_false(set:contains(nil))
    assert.equal(1, v:size())
  end)

  it("are there for other objects", function()
    for _, name in ipairs {"Constraint", "Material", "ContactMaterial"} do
      assert.is_nil(kel[name.."PtrVector"](2):at(1))
    end
    local frame = kel.AffineMatrix4x4()
    local v = kel.AffineMatrix4x4PtrVector()
    v:push_back(frame)
    v:front():setTranslate(1, 2, 3)
    assert.equal("Vec3(1, 2, 3)", tostring(frame:getTranslate()))
  end)
end)

describe("The arrays of references", function()
  it("count", function()
    local a, b, v = kel.RigidBody(), kel.RigidBody(), kel.RigidBodyRefVector()
    assert.is_false(v:findAndErase(a, true))
    for _, body in ipairs {a, a, b, b} do v:push_back(body) end
    assert.equal(3, a:getReferenceCount())
    assert.same({0, 2, 4}, {v:find(a), v:find(b), v:find(kel.RigidBody())})
    assert.is_true(v:findAndErase(a, true))
    assert.is_true(v:findAndErase(b))
    assert.same({1, 1, 2}, {v:size(), a:getReferenceCount(), b:getReferenceCount()})
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
    fails("invalid 'self'", body.getReferenceCount, body)
  end)

  it("let go in any order", function()
    for _, order in ipairs {{"v", "set"}, {"set", "v"}, {"body", "v"}, {"v", "body"}, {"body", "set"}, {"set", "body"}} do
      local held = {body = kel.RigidBody("body"), v = kel.RigidBodyRefVector(), set = kel.RigidBodyRefSetVector()}
      held.v:push_back(held.body)
      held.set:push_back(held.body)
      local watch = held.set:at(0)
      for _, key in ipairs(order) do
        held[key] = nil
        collect()
      end
      assert.equal("body", watch:getName())
    end
  end)
end)

describe("The sets", function()
  it("keep the first place, and hold two references", function()
    local a, b, set = kel.RigidBody(), kel.RigidBody(), kel.RigidBodyRefSetVector()
    for _, body in ipairs {a, b, a} do set:push_back(body) end
    assert.same({2, 3, 3}, {set:size(), a:getReferenceCount(), b:getReferenceCount()})
    assert.is_true(set:front() == a and set:back() == b)
    set:clear()
    assert.same({0, 1, 1}, {set:size(), a:getReferenceCount(), b:getReferenceCount()})
    assert.is_true(set:empty())
    fails(OUTSIDE, set.back, set)
  end)

  it("that scripts only see are not made by them", function()
    for _, class in ipairs {kel.RigidBodyRefSet, kel.ConstraintRefSet, kelSDK.AssemblyRefSet} do
      assert.is_nil(rawget(class, "new"))
      assert.is_true(type(class.const_iterator) == "table" and type(class.iterator) == "table")
    end
    assert.is_function(kel.ConstraintRefSet.empty)
    assert.is_nil(kel.RigidBodyRefSet.empty)
    local set = kel.RigidBodyRefSet
    fails("invalid 'self' in function 'begin'", set.Begin, nil)
    fails("invalid 'self' in function 'end'", set.End, nil)
    refuses("Begin", set.Begin, 1)
    refuses("End", set.End, 1)
  end)
end)

describe("The small containers of numbers", function()
  it("keep ranges in order", function()
    local indexed = kel.IndexedRangeReal(3, kel.RangeReal(2, 1))
    assert.same({3, 1, 2}, {indexed.index, indexed.range:lower(), indexed.range:upper()})
    indexed.range = kel.RangeReal(9, 4)
    indexed.index = 7.9
    assert.same({7, 4, 9}, {indexed.index, indexed.range:lower(), indexed.range:upper()})
    fails("invalid type in variable assignment.", function() indexed.range = nil end)
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
