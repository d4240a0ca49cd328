-- A script in the place of the engine's friction models.
local shell = require("tests.shell")

local GRAVITY = 9.80665

--- A box of 2 kg on the ground, and the contact material between them.
local function slider(model, friction)
  local sim = kelSDK.Simulation()
  local material = kel.Material("test")
  material:getBulkMaterial():setDensity(10)
  local contact = kel.ContactMaterial(material, material)
  contact:setRestitution(0)
  contact:setFrictionCoefficient(friction or 0.5)
  contact:setFrictionModel(model)
  sim:add(contact)
  local ground = kelCollide.Geometry(kelCollide.Plane())
  ground:setMaterial(material)
  sim:add(ground)
  local geometry = kelCollide.Geometry(kelCollide.Box(0.5, 0.5, 0.1))
  geometry:setMaterial(material)
  local box = kel.RigidBody(geometry)
  box:setPosition(0, 0, 0.1)
  sim:add(box)
  for _ = 1, 30 do sim:stepForward() end
  return sim, box, ground, geometry, contact
end

local function loss(sim, box, velocity)
  box:setVelocity(velocity, 0, 0)
  for _ = 1, 12 do sim:stepForward() end
  return (velocity - box:getVelocity():x()) / 0.2
end

local ADAPTERS = { "LuaBoxFrictionModel", "LuaScaleBoxFrictionModel", "LuaIterativeProjectedConeFriction" }

describe("Friction models", function()
  it("are of the solve type that they were made with, truncated", function()
    for _, name in ipairs(ADAPTERS) do
      assert.equal(3, kel[name]():getSolveType())
      assert.equal(2, kel[name]:new_local(2.7):getSolveType())
      assert.equal(9, kel[name](9):getSolveType())
      assert.equal(name:sub(4), kel[name]():getClassName())
      local model = kel[name](kel.FrictionModel.DIRECT)
      assert.equal(name ~= "LuaBoxFrictionModel", model:needsNlmcpCallbacks())
      model:setSolveType(kel.FrictionModel.SPLIT)
      assert.is_false(model:needsNlmcpCallbacks())
    end
    assert.equal(kel.FrictionModel.INITIALIZE, kel.BoxFrictionModel():getCallbackMask())
    assert.error_matches(function() kel.BoxFrictionModel:new("x") end, "error in function 'new'%.")
  end)

  it("answer like the engine's without functions", function()
    for _, name in ipairs(ADAPTERS) do
      local engine, bodyOfEngine = slider(kel[name:sub(4)]())
      local scripted, bodyOfScript = slider(kel[name]())
      assert.equal(loss(engine, bodyOfEngine, 5), loss(scripted, bodyOfScript, 5))
    end
  end)

  it("ask the script for the normal force", function()
    local model = kel.LuaBoxFrictionModel()
    local arguments
    function model:calculateNormalForce(...)
      arguments = { self, ... }
      return 2
    end
    local sim, box, ground, geometry = slider(model)
    assert.near(0.5 * 4 * 2 / 2, loss(sim, box, 5), 0.004) -- four points of 2 N
    assert.equal(model, arguments[1])
    assert.is_true(arguments[2] == ground and arguments[3] == geometry)
    assert.equal("kel::Vec3", tolua.type(arguments[4]))
    assert.near(1, math.abs(arguments[5]:z()), 1e-6)
    assert.near(0, arguments[6], 1e-3)
    assert.near(2 * GRAVITY / 4, arguments[7], 0.5)
    assert.equal(4, arguments[8])
    assert.is_nil(arguments[9])
  end)

  it("ask the script for the plane, the first tangent first", function()
    for _, name in ipairs(ADAPTERS) do
      local model = kel[name]()
      function model:calculateTangentPlane(_, _, _, normal)
        local u = kel.Vec3(0.6, 0.8, 0)
        return u, kel.cross(normal, u)
      end
      local sim, box, _, _, contact = slider(model)
      contact:setFrictionCoefficient(0, kel.ContactMaterial.SECONDARY_DIRECTION)
      box:setVelocity(5, 0, 0)
      for _ = 1, 12 do sim:stepForward() end
      local lost = (kel.Vec3(5, 0, 0) - box:getVelocity()) * 5
      assert.near(0.5 * GRAVITY, lost * kel.Vec3(0.6, 0.8, 0), 0.05)
      assert.near(0, lost * kel.Vec3(-0.8, 0.6, 0), 0.05)
    end
  end)
end)

describe("A friction model's function", function()
  local function run(functions, ending)
    return shell.kel(shell.script([[
      sim = kelSDK.Simulation()
      local material = kel.Material("test")
      contact = kel.ContactMaterial(material, material)
      local model = kel.LuaBoxFrictionModel()
      ]] .. functions .. [[
      contact:setFrictionModel(model)
      sim:add(contact)
      sphere = kelCollide.Geometry(kelCollide.Sphere(1))
      sphere:setMaterial(material)
      local ground = kelCollide.Geometry(kelCollide.Plane())
      ground:setMaterial(material)
      sim:add(ground)
      body = kel.RigidBody(sphere)
      body:setPosition(0, 0, 1)
      sim:add(body)
      sim:stepForward()
      ]] .. (ending or "print(body:getPosition():z() > 0.99)")))
  end

  local PLANE = "virtual void kel::LuaBoxFrictionModel::calculateTangentPlane(const kelCollide::Geometry*, "
    .. "const kelCollide::Geometry*, const Vec3&, const Vec3&, kel::Real, kel::Vec3&, kel::Vec3&) const"

  it("may change the world", function()
    local changes = { "sim:remove(body)", "sim:remove(sphere)", "sim:remove(contact)", "contact:setFrictionModel(nil)",
      "sim:add(kel.RigidBody())", "sim:remove(body) body, sphere = nil, nil collectgarbage()", "sim:stepForward()" }
    for _, change in ipairs(changes) do
      local functions = ("function model:calculateTangentPlane() %s end\n"):format(change)
        .. ("function model:calculateNormalForce() %s return 1 end\n"):format(change)
      assert.equal(0, run(functions, "sim:stepForward() print(true)").status, change)
    end
  end)

  it("may fail, or answer nonsense, and the engine answers", function()
    local failed = run("function model:calculateNormalForce() error('no force', 0) end")
    assert.equal("true\n", failed.out)
    assert.equal("warning: no force\n", failed.err)
    for _, answer in ipairs({ "kel.Vec3(1, 0, 0)", "'a', 'b'", "kel.Vec3(1, 0, 0), 7" }) do
      local odd = run("function model:calculateTangentPlane() return " .. answer .. " end")
      assert.equal("true\n", odd.out)
      assert.equal("warning: " .. PLANE .. " should return two objects of the right type\n", odd.err)
    end
    local zero = run("function model:calculateTangentPlane() return kel.Vec3(), kel.Vec3() end")
    assert.equal("true\n", zero.out)
    assert.equal("", zero.err)
  end)
end)
