local support = require("tests.binding.support")
local results, fails, refuses = support.results, support.fails, support.refuses
local OUTSIDE = "index of an element is out of range"
local function Type(name) return (kelData.getType(name)) end
local function Format(name) return (kelData.getFormat(name)) end

-- Stems with an element that is not the default, and its text.
local STEMS = {Bool = {true, "true"}}
for stem in ("Real Real32 Real64"):gmatch("%S+") do STEMS[stem] = {1.5, "1.5"} end
for stem in ("Int Int8 Int16 Int32 Int64 UInt UInt8 UInt16 UInt32 UInt64"):gmatch("%S+") do STEMS[stem] = {5, "5"} end
STEMS.Vec2 = {kel.Vec2(1, 2), "1 2"}
STEMS.Vec2i = {kel.Vec2i(1, 2), "1 2"}
STEMS.Vec3 = {kel.Vec3(1, 2, 3), "1 2 3"}
STEMS.Vec3f = {kel.Vec3f(1, 2, 3), "1 2 3"}
STEMS.Vec4f = {kel.Vec4f(1, 2, 3, 4), "1 2 3 4"}
STEMS.Quat = {kel.Quat(1, 2, 3, 4), "1 2 3 4"}

describe("types and formats", function()
  it("are found by name", function()
    assert.same({n = 2, Type("Vec3"), "Vec3"}, results(kelData.getType("Vec3")))
    assert.same({n = 2, nil, "Vec"}, results(kelData.getType("Vec")))
    assert.same({n = 2, nil, "ascii"}, results(kelData.getFormat("ascii")))
    assert.is_truthy(Format("Vec3.ascii"))
    assert.is_true(kel.Vec3fValue():getFormat() == Format("Vec3f"))
    assert.is_true(kel.Vec3Value():getFormat() == Format("Vec3d"))
    assert.is_true(kel.Vec3fValue():getType() == kel.Vec3Value():getType())
    assert.equal("kelData::Format", tolua.type(kel.RealValue():getFormat()))
  end)
end)

for stem, example in pairs(STEMS) do
  local element, text = example[1], example[2]
  local valueClass, bufferClass, arrayClass = kel[stem.."Value"], kel[stem.."Buffer"], kel[stem.."Array"]

  it("kel."..stem.."Value, Buffer and Array hold elements", function()
    local value, other = valueClass("x", element), valueClass(element)
    assert.is_true(value:get() == element and other:get() == element)
    assert.same({text, "kel::"..stem.."Value"}, {value:toString(), tolua.type(value)})
    other:setDefaultValue()
    assert.is_true(other:get() == valueClass():get() and other:get() == valueClass("name"):get())
    assert.is_false(other:get() == element)
    other:set(element)
    assert.is_true(other:get() == element)
    refuses("set", other.set, other, {})

    local buffer, array = bufferClass("b"), arrayClass()
    for _, empty in ipairs {buffer, array} do
      assert.same({true, 0}, {empty:empty(), empty:size()})
      fails(OUTSIDE, empty.front, empty)
      fails(OUTSIDE, empty.back, empty)
    end
    buffer:push_back(element)
    assert.same({false, 1, 4}, {buffer:empty(), buffer:size(), buffer:capacity()})
    buffer:resize(6)
    assert.is_true(buffer:front() == element and buffer:at(0) == element)
    assert.is_true(buffer:back() == valueClass():get() and buffer:at(5) == buffer:back())
    buffer:clear()
    assert.same({0, 6}, {buffer:size(), buffer:capacity()})
    assert.is_true(buffer:getFormat() == valueClass():getFormat())
  end)
end

describe("texts", function()
  it("lie in buffers, not in values", function()
    local buffer = kel.StringBuffer()
    for i = 1, 100 do buffer:push_back("text "..i) end
    assert.same({"text 1", "text 100"}, {buffer:front(), buffer:back()})
    assert.is_nil(kel.StringValue)
    assert.equal(0, kel.StringArray():size())
  end)
end)

describe("kelData.Value", function()
  it("is made of a type or a format, with or without a name", function()
    local value, name = kelData.Value:new_local("v", Type("Vec3"))
    assert.same({"kelData::Value", "v"}, {tolua.type(value), name})
    assert.is_false(value:isValid())
    assert.is_nil(value:getFormat())
    assert.equal("", value:toString())
    value:set(kel.Vec3Value(kel.Vec3(1)))
    assert.equal("1 1 1", value:toString())
    assert.equal(2, results(kelData.Value:new_local("f", Format("Vec3f"))).n)
    assert.equal(1, results(kelData.Value:new_local(Type("Vec3"))).n)
    assert.is_true(kelData.Value(Format("Real32")):isValid())
    assert.equal("userdata", type(value:ptr()))
    assert.equal("kelData::Data", tolua.type(value:getData()))
    assert.is_table(kelData.Type)
    assert.is_table(kelNet.Device)
  end)

  it("takes what has its type", function()
    local wide, narrow, whole = kel.RealValue(0.1), kel.Real32Value(), kel.IntValue(3)
    kelData.Value.copy(narrow, wide)
    assert.near(0.1, narrow:get(), 1e-8)
    assert.is_true(wide:isTypeCompatible(narrow))
    assert.is_false(wide:isTypeCompatible(whole))
    fails("Value '' of type Real cannot take one of type Int.", kelData.Value.copy, wide, whole)
    assert.equal(0.1, wide:get())
    assert.equal("0.1", wide:clone():toString())
  end)

  it("follows what it is bound to", function()
    local one, other = kel.RealValue("one", 1), kel.RealValue("other", 2)
    other:bind(one)
    assert.equal(1, other:get())
    other:set(3)
    assert.equal(3, one:get())
    assert.is_true(other:getBinding() == one and other:getRootBinding() == one)
    fails("Value 'one' cannot follow 'other', which follows it.", one.bind, one, other)
    refuses("bind", one.bind, one, {})
    one = nil
    collectgarbage()
    assert.equal(3, other:getBinding() and other:get())
    other:unbind()
    assert.is_nil(other:getBinding())
    assert.equal(3, other:get())
    other:bind("nowhere.x")
    assert.is_false(other:isValid())
    other:unbind(false)
    assert.same({true, 0}, {other:isValid(), other:get()})
  end)

  it("follows an expression", function()
    local value = kel.RealValue("circle")
    assert.same({n = 1, "2*pi*3"}, results(value:setExpression("2*pi*3")))
    assert.near(6 * math.pi, value:get(), 1e-12)
    fails("Value 'circle' bad expression '2*pi*r' at character 6: 'r' is no number that is known here.",
      value.setExpression, value, "2*pi*r")
    local v = kel.Vec3Value()
    v:setExpression("1, 2, sqrt(9)")
    assert.is_true(v:get() == kel.Vec3(1, 2, 3))
  end)
end)

describe("kelData.Buffer", function()
  it("is made of a format", function()
    local buffer = kelData.Buffer("b", Format("Matrix3x3f"))
    assert.same({0, 0, 9}, {buffer:size(), buffer:capacity(), buffer:getElementArraySize()})
    buffer:resize(3)
    buffer:reserve(10)
    assert.same({3, 10}, {buffer:size(), buffer:capacity()})
    assert.is_true(buffer:getType() == Type("Matrix3x3"))
    assert.is_true(buffer:getFormat() == Format("Matrix3x3f"))
    assert.is_nil(buffer:getStorage())
    assert.error_matches(function() buffer:resize(2 ^ 40) end, "buffer 'b' cannot have more than %d+ elements")
    assert.equal(3, buffer:size())
    buffer:rebind()
    assert.equal("kelData::ValueRefT<kel::UInt>", tolua.type(buffer.sizeParameter))
    buffer.sizeParameter = buffer.capacityParameter
    assert.error_matches(function() buffer.sizeParameter = 1 end, "invalid type in variable assignment")
  end)
end)
