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
    local unowned = kel.RigidBody:new()
    assert.equal(0, unowned:getReferenceCount())
    assert.is_false(sim:remove(unowned))
    assert.equal(0, unowned:getReferenceCount())
    sim:add(unowned) -- which owns it from now on
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

describe("a value", function()
  it("may leave its handle, and be taken back", function()
    local order, id = kel.EulerAngles.EulerOrder(5), kel.UuidGenerator()
    assert.is_true(tolua.releaseownership(order) and tolua.releaseownership(id))
    collect()
    assert.equal(5, order:getConvention())
    assert.is_true(tolua.takeownership(order))
    order = nil
    collect()
    id:delete()
    assert.error_matches(function() id:generate() end, "invalid 'self'")
  end)
end)

describe("views", function()
  it("that a script keeps in their owner do not keep both for ever", function()
    local weak = setmetatable({}, { __mode = "v" })
    do
      local body, other = kel.RigidBody(), kel.RigidBody()
      body.force = body:getForce()
      tolua.cast(other, "kel::RigidBody").same = other
      weak[1], weak[2] = body, other
    end
    collect()
    assert.same({}, weak)
  end)

  it("keep their owner whatever table of fields a script gives them", function()
    local weak = setmetatable({}, { __mode = "v" })
    local force
    do
      local body = kel.RigidBody()
      body:addForce(1, 2, 3)
      weak[1], force = body, body:getForce()
    end
    for _, fields in ipairs({ { note = "x" }, false }) do
      tolua.setpeer(force, fields or nil)
      collect()
      assert.equal(kel.Vec3(1, 2, 3), force)
      assert.equal(fields and "x", fields and force.note)
    end
    assert.truthy(weak[1])
    force = nil
    collect()
    assert.is_nil(weak[1])
  end)

  it("may change between types without a class", function()
    local view = kelCollide.Box(1, 1, 1):getBoundingVolume()
    for _, type in ipairs({ "kelCollide::BoundingAABB", "const kelCollide::BoundingAABB", "kelCollide::BoundingAABB" }) do
      assert.equal(view, tolua.cast(view, type))
    end
  end)

  it("cannot be freed by themselves", function()
    local body = kel.RigidBody()
    local view = tolua.cast(body:getCmTransform(), "kel::AffineMatrix4x4")
    tolua.takeownership(view)
    view:delete()
    assert.error_matches(function() view:getTranslate() end, "invalid 'self'")
    assert.equal(kel.Vec3(), body:getCmPosition())
  end)
end)

describe("odd values", function()
  it("are not printed as what they are not", function()
    local print3 = kel.Vec3[".tostring"]
    assert.equal("Vec3(1, 2, 3)", print3(kel.Vec3(1, 2, 3)))
    assert.error_matches(function() print3(kel.Vec2(1, 2)) end, "error in function 'tostring'")
  end)

  it("are no objects", function()
    assert.error_matches(function() tolua.setpeer(kel.Vec3(), 5) end, "bad argument #2")
    assert.error_matches(function() tolua.setpeer(io.stdout, {}) end, "bad argument #1")
    assert.error_matches(function() tolua.inherit() end, "bad argument #1")
    assert.error_matches(function() kel.Vec3.length(io.stdout) end, "argument #1 is 'userdata'; 'const kel::Vec3' expected%.\n     sig")
  end)

  it("may stand for objects", function()
    local own = { extra = 1 }
    tolua.inherit(own, kel.Vec3(3, 4, 0))
    assert.equal(5, kel.Vec3.length(own))
  end)

  it("of a script's finalisers find no dead value", function()
    local seen
    do
      local proxy = newproxy(true) -- the older one is finalised later
      local matrix = kel.AffineMatrix4x4:new()
      tolua.takeownership(matrix)
      getmetatable(proxy).__gc = function() seen = { pcall(matrix.getTranslate, matrix) } end
    end
    collect()
    assert.truthy(seen[2]:find("invalid 'self'", 1, true))
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
