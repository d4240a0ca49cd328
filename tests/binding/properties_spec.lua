local function results(...) return {n = select("#", ...), ...} end

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
    assert.same({n = 1, 9}, results(properties:size()))
    properties:addPropertyInt("a", 1)
    properties:clear()
    assert.equal(9, properties:size())
    assert.same({n = 2, true, "Real"}, results(properties:hasPropertyType("Real")))
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
      is(other, call("get", "p"))
      is(one, call("add", "p", one))
      assert.same({n = 2, true, "p"}, call("get", "p", other))
      assert.same({n = 2, false, "q"}, call("get", "q", other))
      for another in pairs(VALUES) do
        assert.equal(another == word, (properties["hasProperty"..another](properties, "p")))
      end
      properties:clear()
      assert.same({n = 2, false, "p"}, call("has", "p"))
    end)

    it("has errors for missing properties of type "..word, function()
      local thrown = select(2, pcall(call, "set", "missing", one))
      assert.matches("properties_spec.lua:%d+: Property named missing is missing$", thrown)
      assert.same({n = 2, false, "missing"}, call("has", "missing"))
      thrown = select(2, pcall(call, "get", "x"))
      assert.matches("properties_spec.lua:%d+: Property x of type "..word.." is missing!$", thrown)
      is(one, call("add", "p", one))
    end)
  end

  it("cuts numbers to their type", function()
    assert.equal(3, (properties:addPropertyInt("i", 3.9)))
    assert.equal(-3, (properties:addPropertyLong("l", -3.9)))
    assert.equal(1, (properties:addPropertyInt("i", 2 ^ 32 + 1)))
    assert.equal(2 ^ 32 + 1, (properties:addPropertyLong("l", 2 ^ 32 + 1)))
    assert.not_equal(0.1, (properties:addPropertyFloat("f", 0.1)))
    assert.near(0.1, (properties:getPropertyFloat("f")), 1e-8)
    assert.same({0.1, 0.2}, {(properties:addPropertyReal("d", 0.1)), (properties:addPropertyDouble("d", 0.2))})
  end)

  it("hands out vectors as views that live as long as the container", function()
    local stored = properties:addPropertyVec3("v", kel.Vec3(1, 2, 3))
    local given = kel.Vec3(7)
    assert.same({n = 2, true, "v"}, results(properties:getPropertyVec3("v", given)))
    assert.is_true(given == kel.Vec3(7))
    stored:set(4, 5, 6)
    assert.is_true((properties:getPropertyVec3("v")) == kel.Vec3(4, 5, 6))
    for i = 1, 1000 do properties:addPropertyVec3("v"..i, given) end
    stored:set(8, 8, 8)
    assert.is_true((properties:getPropertyVec3("v")) == kel.Vec3(8))
  end)

  it("refuses what is no value", function()
    assert.error_matches(function() properties:addPropertyVec3("v", nil) end, "error in function 'addPropertyVec3'%.")
    assert.error_matches(function() properties:getPropertyVec2("v", nil) end, "error in function 'getPropertyVec2'%.")
    assert.error_matches(function() properties:addPropertyInt("i", {}) end, "error in function 'addPropertyInt'%.")
    assert.error_matches(function() properties.size(nil) end, "invalid 'self' in function 'size'")
  end)

  it("is what archives can hold", function()
    assert.equal("kelStream::Serializable", tolua.type(properties.__kelStream__Serializable__))
  end)
end)

describe("getPropertyContainer", function()
  for name, make in pairs {
    ["kel.RigidBody"] = function() return kel.RigidBody() end,
    ["kelCollide.Geometry"] = function() return kelCollide.Geometry() end,
  } do
    it("gives the one container of a "..name, function()
      local owner = make()
      local properties = owner:getPropertyContainer()
      assert.equal("kel::PropertyContainer", tolua.type(properties))
      properties:addPropertyString("colour", "red")
      assert.is_true(owner:getPropertyContainer() == properties)
      properties = nil
      collectgarbage()
      assert.same({"red", "colour"}, {owner:getPropertyContainer():getPropertyString("colour")})
      assert.is_false((make():getPropertyContainer():hasPropertyString("colour")))
    end)

    it("lets the container of a "..name.." go with it", function()
      local owner = make()
      local properties = owner:getPropertyContainer()
      local view = properties:addPropertyVec3("v", kel.Vec3(1))
      owner = nil
      collectgarbage()
      collectgarbage()
      assert.error_matches(function() properties:size() end, "invalid 'self' in function 'size'")
      assert.error_matches(function() view:x() end, "invalid 'self' in function 'x'")
    end)
  end
end)
