-- Bodies, geometries and simulations as scripts meet them.
local NAN, HUGE = 0 / 0, math.huge

local function boxBody(x, y, z, size)
  local body = kel.RigidBody(kelCollide.Geometry(kelCollide.Box(kel.Vec3(size or 0.5))))
  body:setPosition(x, y, z)
  return body
end

local function world()
  local sim = kelSDK.Simulation()
  sim:add(kelCollide.Geometry(kelCollide.Plane()))
  return sim
end

local function step(sim, count)
  for _ = 1, count do sim:stepForward() end
end

describe("kelSDK.Simulation", function()
  it("finds bodies and geometries by name and by identifier", function()
    local sim, geometry = kelSDK.Simulation(), kelCollide.Geometry("crate")
    local body = kel.RigidBody("carrier")
    body:add(geometry)
    sim:add(body)
    assert.same({ body, "carrier" }, { sim:getRigidBody("carrier") })
    assert.same({ geometry, "crate" }, { sim:getGeometry("crate") })
    assert.equal(1, select("#", sim:getRigidBody(body:getUuid())))
    assert.equal(body, sim:getRigidBody(body:getUuid()))
    assert.equal(geometry, sim:getGeometry(geometry:getUuid()))
    assert.is_nil(sim:getGeometry(body:getUuid()))
    assert.same({ nil, "nobody" }, { sim:getRigidBody("nobody") })
  end)

  it("has a body and a geometry only once, and lets another simulation have it afterwards", function()
    local one, other, body = kelSDK.Simulation(), kelSDK.Simulation(), boxBody(0, 0, 0)
    assert.is_true(one:add(body))
    assert.is_false(one:add(body, true))
    assert.is_false(other:add(body))
    assert.is_false(other:remove(body))
    assert.is_true(one:remove(body))
    assert.is_true(other:add(body))
    step(other, 1)
    assert.is_true(body:getVelocity():z() < 0)
  end)

  it("ends stepTo where a step no longer moves the clock", function()
    local sim = kelSDK.Simulation()
    sim:setTimeStamp(1e17)
    assert.equal(1e17, sim:stepTo(1e17 + 1000))
  end)

  it("keeps its step against lengths that are none", function()
    local sim = kelSDK.Simulation()
    for _, length in ipairs({ -1, NAN, HUGE }) do
      sim:setTimeStep(length)
      assert.equal(1 / 60, sim:getTimeStep())
    end
  end)

  it("loses one body to infinity and no other", function()
    local spoil = {
      function(body) body:setPosition(NAN, 0, 0) end,
      function(body) body:setPosition(0, HUGE, 0) end,
      function(body) body:setRotation(kel.Quat(NAN, 0, 0, 1)) end,
      function(body) body:setVelocity(0, 0, -HUGE) end,
      function(body) body:setAngularVelocity(NAN, 0, 0) end,
      function(body) body:addForce(0, NAN, 0) end,
      function(body) body:addTorque(HUGE, 0, 0) end
    }
    for i, deed in ipairs(spoil) do
      local sim, below, above = world(), boxBody(0, 0, 0.5), boxBody(0, 0, 1.5)
      sim:add(below)
      sim:add(above)
      step(sim, 30)
      deed(above)
      step(sim, 60)
      assert.near(0.5, below:getPosition():z(), 1e-2, "case "..i)
      above:setTransform(kel.AffineMatrix4x4.translate(0, 0, 1.6))
      above:setVelocity(0, 0, 0)
      above:setAngularVelocity(0, 0, 0)
      step(sim, 120)
      assert.near(1.5, above:getPosition():z(), 1e-2, "case "..i)
    end
  end)

  it("lets shapes without a sound size collide with nothing", function()
    for _, size in ipairs({ -1, NAN, HUGE }) do
      local sim, box = world(), boxBody(0, 0, 0.5)
      sim:add(box)
      sim:add(boxBody(0, 0, 0.5, size))
      sim:add(kel.RigidBody(kelCollide.Geometry(kelCollide.Sphere(size))))
      sim:add(kelCollide.Geometry(kelCollide.Plane(0, 0, size, HUGE)))
      step(sim, 30)
      assert.near(0.5, box:getPosition():z(), 1e-2)
    end
  end)
end)

describe("kel.RigidBody", function()
  it("takes its mass from the shapes of its geometries, whenever they come", function()
    local body, geometry, box = kel.RigidBody(), kelCollide.Geometry(), kelCollide.Box(1, 1, 1)
    body:setVelocity(1, 0, 0)
    assert.equal(1, body:getLinearMomentum():x())
    body:add(geometry)
    geometry:add(box)
    local full = body:getLinearMomentum():x()
    assert.is_true(full > 1)
    geometry:add(kelCollide.Box(1, 1, 1), kel.AffineMatrix4x4.translate(2, 0, 0))
    assert.near(2 * full, body:getLinearMomentum():x(), 1e-9)
    assert.near(1, body:getCmPosition():x(), 1e-12)
    geometry:remove(box)
    assert.near(full, body:getLinearMomentum():x(), 1e-9)
    assert.near(2, body:getCmPosition():x(), 1e-12)
  end)

  it("keeps its mass when that of a shape is out of range", function()
    for _, size in ipairs({ 0, NAN, HUGE, 1e200, 1e-300 }) do
      local body = boxBody(0, 0, 0, size)
      body:setVelocity(1, 0, 0)
      assert.equal(1, body:getLinearMomentum():x())
    end
  end)

  it("ignores motion controls that do not exist", function()
    local body = kel.RigidBody()
    body:setMotionControl(kel.RigidBody.KINEMATICS)
    for _, control in ipairs({ 0, 4, 5, -1 }) do
      body:setMotionControl(control)
      assert.equal(kel.RigidBody.KINEMATICS, body:getMotionControl())
    end
  end)
end)

describe("kelCollide.Geometry", function()
  it("rides on its body and can be told a place in the world", function()
    local body, geometry = kel.RigidBody(), kelCollide.Geometry(kelCollide.Box(1, 1, 1))
    body:add(geometry, kel.AffineMatrix4x4.translate(1, 0, 0))
    local view = geometry:getFrame():getMatrix()
    body:setRotation(kel.Quat(math.pi / 2, kel.Vec3.Z_AXIS()))
    body:setPosition(0, 0, 5)
    assert.is_true(kel.equivalent(kel.Vec3(0, 1, 5), geometry:getPosition()))
    assert.is_true(kel.equivalent(kel.Vec3(0, 1, 5), view:getTranslate()))
    assert.is_true(kel.equivalent(body:getRotation(), geometry:getRotation()))
    geometry:setPosition(3, 3, 3)
    assert.is_true(kel.equivalent(kel.Vec3(3, -3, -2), geometry:getLocalPosition()))
  end)

  it("tries a name first and a shape last", function()
    assert.equal(2, select("#", kelCollide.Geometry:new_local("crate")))
    local _, failure = pcall(kelCollide.Geometry, {})
    assert.matches("argument #2 is 'table'; 'kelCollide::Shape' expected", failure, 1, true)
  end)
end)

describe("Sleep", function()
  it("lets a resting body stand until a force wakes it", function()
    local sim, box = world(), boxBody(0, 0, 0.5)
    sim:add(box)
    kel.AutoSleep(box:getSystem()):setEnable(true)
    local sleep = box:getAutoSleepProperties()
    step(sim, 60)
    assert.equal(sleep.ASLEEP, sleep:getState())
    assert.is_true(kel.AutoSleep(box:getSystem()):getEnable())
    box:addForce(100, 0, 0)
    step(sim, 1)
    assert.is_false(sleep:isSleeping())
  end)

  it("has thresholds whose defaults differ by their use", function()
    local function values(t)
      return { t:getVelocity(), t:getAcceleration(), t:getAngularVelocity(), t:getAngularAcceleration() }
    end
    local small, medium = kel.Vec3f(0.05, 0.2, 0):x(), kel.Vec3f(0.05, 0.2, 0):y()
    assert.same({ small, medium, 1e10, 1e10 }, values(kel.SleepThreshold()))
    assert.same({ 1, 2, 3, 1e10 }, values(kel.MergeSplitThreshold(1, 2, 3)))
    assert.same({ 1, 1e10, small, 1e10 }, values(kel.AutoSleepThreshold(1)))
    assert.equal(5, kel.AutoSleepThreshold(1, 2, 3, 4, 5):getTime())
    assert.is_true(math.abs(small * small - kel.SleepThreshold():getVelocity2()) < 1e-9)
  end)

  it("knows no sleep of its own for nil, and no threshold before one is set", function()
    local body = kel.RigidBody()
    assert.is_nil(body:getAutoSleepThreshold())
    body:setAutoSleepThreshold(kel.AutoSleepThreshold(1))
    collectgarbage()
    assert.equal(1, body:getAutoSleepThreshold():getVelocity())
    local sleep = kel.AutoSleep(nil)
    sleep:setEnable(true)
    assert.is_true(sleep:getEnable())
  end)
end)
