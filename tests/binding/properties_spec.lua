local support = require("tests.binding.support")
local results, refuses = support.results, support.refuses

local VALUES = {
  Long = {-2 ^ 40, 7}, Int = {-3, 4}, Float = {0.5, 2}, Double = {0.1, 0.2}, Real = {0.1, -1}, Bool = {true, false},
  String = {"text", ""}, Vec2 = {kel.Vec2(1, 2), kel.Vec2(3)}, Vec3 = {kel.Vec3(1, 2, 3), kel.Vec3(4)},
}

describe("kel.PropertyContainer", function()
  local properties

  before_each(function() properties = kel.PropertyContainer() end)

  it("knows its types, whose number is its size", function()
    for word in pairs(VALUES) do assert.same({n = 2, true, word}, results(properties:hasPropertyType(word))) end
    assert.same({n = 2, false, "Vec4"}, results(properties:hasPropertyType("Vec4")))
    properties:addPropertyInt("", 1)
    properties:clear()
    assert.same({n = 1, 9}, results(properties:size()))
  end)

  for word, values in pairs(VALUES) do
    local one, other = values[1], values[2]
    local function call(verb, ...) return results(properties[verb.."Property"..word](properties, ...)) end
    local function is(value, found)
      assert.same({2, "p"}, {found.n, found[2]})
      assert.is_true(found[1] == value)
    end

    it("keeps properties of type "..word, function()
      assert.same({n = 2, false, "p"}, call("has", "p"))
      is(one, call("add", "p", one))
      assert.same({n = 2, true, "p"}, call("has", "p"))
      is(one, call("get", "p"))
      is(other, call("set", "p", other))
      is(one, call("add", "p", one))
      assert.same({n = 2, true, "p"}, call("get", "p", other))
      assert.same({n = 2, false, "q"}, call("get", "q", other))
      for another in pairs(VALUES) do
        assert.equal(another == word, (properties["hasProperty"..another](properties, "p")))
      end
      properties:clear()
      assert.same({n = 2, false, "p"}, call("has", "p"))
      local thrown = select(2, pcall(call, "set", "missing", one))
      assert.matches("properties_spec.lua:%d+: Property named missing is missing$", thrown)
      thrown = select(2, pcall(call, "get", "x"))
      assert.matches("properties_spec.lua:%d+: Property x of type "..word.." is missing!$", thrown)
    end)
  end

  it("cuts numbers to their type", function()
    for _, case in ipairs {{"Int", 3.9, 3}, {"Long", -3.9, -3}, {"Int", 2 ^ 32 + 1, 1}, {"Long", 2 ^ 32 + 1, 2 ^ 32 + 1},
                           {"Float", 0.1, kel.Vec3f(0.1):x()}, {"Real", 0.1, 0.1}, {"Double", 0.2, 0.2}} do
      assert.equal(case[3], (properties["addProperty"..case[1]](properties, "p", case[2])))
    end
  end)

  it("hands out vectors as views that live as long as the container", function()
    local stored = properties:addPropertyVec3("v", kel.Vec3(1, 2, 3))
    local given = kel.Vec3(7)
    assert.same({n = 2, true, "v"}, results(properties:getPropertyVec3("v", given)))
    assert.is_true(given == kel.Vec3(7))
    stored:set(4, 5, 6)
    assert.is_true((properties:getPropertyVec3("v")) == kel.Vec3(4, 5, 6))
  end)

  it("refuses what is no value", function()
    refuses("addPropertyVec3", properties.addPropertyVec3, properties, "v", nil)
    refuses("getPropertyVec2", properties.getPropertyVec2, properties, "v", nil)
    refuses("addPropertyInt", properties.addPropertyInt, properties, "i", {})
    support.fails("invalid 'self' in function 'size'", properties.size, nil)
  end)

  it("is what archives can hold", function()
    assert.equal("kelStream::Serializable", tolua.type(properties.__kelStream__Serializable__))
  end)
end)

describe("getPropertyContainer", function()
  for _, class in ipairs {kel.RigidBody, kelCollide.Geometry} do
    it("gives the one container of a "..tolua.type(class)..", which goes with it", function()
      local owner = class()
      local properties = owner:getPropertyContainer()
      assert.equal("kel::PropertyContainer", tolua.type(properties))
      properties:addPropertyString("colour", "red")
      assert.is_true(owner:getPropertyContainer() == properties)
      properties = nil
      support.collect()
      properties = owner:getPropertyContainer()
      assert.same({"red", "colour"}, {properties:getPropertyString("colour")})
      assert.is_false((class():getPropertyContainer():hasPropertyString("colour")))
      local view = properties:addPropertyVec3("v", kel.Vec3(1))
      owner = nil
      support.collect()
      support.fails("invalid 'self' in function 'size'", properties.size, properties)
      support.fails("invalid 'self' in function 'x'", view.x, view)
    end)
  end
end)
