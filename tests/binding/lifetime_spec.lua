-- Objects, handles and views: nothing dangles, nothing leaks.
local function collect() for _ = 1, 3 do collectgarbage() end end

--- Resident memory of this process in MB.
local function resident()
  local pages = io.open("/proc/self/statm"):read("*a"):match("%d+ (%d+)")
  return pages * 4096 / 2^20
end

describe("handles", function()
  it("say so when their object is gone", function()
    local body = kel.RigidBody:new()
    body:reference()
    local mass, frame = body:getMassProperties(), body:getFrame()
    local force = body:getForce()
    body:unreference()
    assert.error_matches(function() body:getPosition() end, "invalid 'self' in function 'getPosition'")
    assert.error_matches(function() frame:getTranslate() end, "invalid 'self' in function 'getTranslate'")
    assert.error_matches(function() force:length() end, "invalid 'self' in function 'length'")
    assert.error_matches(function() return kel.Vec3(1) + force end, "error in function '%.add'")
    assert.truthy(mass)
    assert.is_false(kelSDK.Simulation():add(body))
  end)

  it("are never confused with those of a later object at the same address", function()
    for _ = 1, 2000 do
      local geometry = kelCollide.Geometry:new()
      geometry:reference()
      geometry:unreference()
      local body = kel.RigidBody()
      assert.equal("kel::RigidBody", tolua.type(body))
      assert.error_matches(function() geometry:getName() end, "invalid 'self'")
    end
  end)

  it("are one for one object", function()
    local body = kel.RigidBody("box")
    local sim = kelSDK.Simulation()
    sim:add(body)
    assert.equal(body, (sim:getRigidBody("box")))
    assert.equal(body:getFrame(), body:getFrame())
    local missing, name = sim:getRigidBody("ball")
    assert.is_nil(missing)
    assert.equal("ball", name)
  end)

  it("keep their types when a constant view without members of its own is asked for again", function()
    local shape = kelCollide.Box(1, 1, 1)
    local bound = shape:getBoundingVolume()
    assert.equal(bound, shape:getBoundingVolume())
    assert.equal(bound, shape:updateBoundingVolume())
    assert.equal("kelCollide::Box", tolua.type(shape))
    assert.equal("const kelCollide::BoundingAABB", tolua.type(bound))
  end)
end)

describe("ownership", function()
  it("is shared by script and engine", function()
    local sim = kelSDK.Simulation()
    local body = kel.RigidBody()
    assert.equal(1, body:getReferenceCount())
    sim:add(body)
    assert.is_true(body:getReferenceCount() > 1)
    sim:remove(body)
    assert.equal(1, body:getReferenceCount())
    assert.equal(0, kel.RigidBody:new():getReferenceCount())
  end)

  it("ends at collection", function()
    local sim = kelSDK.Simulation()
    local body = kel.RigidBody:new()
    sim:add(body)
    local count = body:getReferenceCount()
    do local _ = kel.RigidBody() end
    sim = nil
    collect()
    assert.is_true(count > 0)
    assert.error_matches(function() body:getPosition() end, "invalid 'self'")
  end)

  it("of a value lies with the script, and a view keeps its owner", function()
    local body = kel.RigidBody()
    local position = body:getPosition()
    position:set(9, 9, 9)
    assert.equal(0, body:getPosition():x())
    local force = body:getForce()
    body:addForce(1, 2, 3)
    assert.equal(kel.Vec3(1, 2, 3), force)
    assert.error_matches(function() force:set(0, 0, 0) end, "error in function 'set'")
  end)
end)

describe("a million objects", function()
  it("leave memory flat", function()
    local function make(count)
      for i = 1, count do
        local v = kel.Vec3(i, 0, 0) + kel.Vec3(1)
        if i % 4 == 0 then
          local box = kelCollide.Box(v)
          if i % 16 == 0 then
            local body = kel.RigidBody("body")
            body:add(kelCollide.Geometry(box))
            body:getFrame():getMatrix()
          end
        end
      end
      collect()
    end
    make(100000)
    local before, heap = resident(), collectgarbage("count")
    make(400000)
    assert.is_true(resident() < before * 1.25 + 8, ("%.1f MB -> %.1f MB"):format(before, resident()))
    assert.is_true(collectgarbage("count") < heap * 1.1 + 100)
  end)
end)

describe("simulations", function()
  it("are cheap when empty", function()
    local before, simulations = resident(), {}
    for i = 1, 200 do simulations[i] = kelSDK.Simulation() end
    assert.is_true(resident() < before + 60, ("%.1f MB -> %.1f MB"):format(before, resident()))
  end)
end)
