-- A short life that goes through every part of the runtime, for the test in which memory fails. Nothing is checked
-- here: a memory error that a pcall caught changes what comes after it.

-- values, operators, texts
local a = kel.Vec3(1, 2, 3)
local sum = a + kel.Vec3(4) - -a
tostring(sum * 2)
tostring(kel.AffineMatrix4x4())
kel.Vec3.random(0, 1)
kel.Vec3f({ 1, 2, 3 }):ptr()
local matrix = kel.AffineMatrix4x4()
matrix:setTranslate(1, 2, 3):setIdentity()
matrix:delete()

-- reports
pcall(kel.Vec3.length)
pcall(kel.Vec3.set, a, "x", io.stdout, {})
pcall(function() return a + true end)
pcall(a.at, a, 100)
pcall(matrix.valid, matrix)
pcall(function() return kel.NoSuchClass() end)
xpcall(function() kelCollide.Box("a text that is a good deal longer than a short one") end, debug.traceback)

-- objects, views, what a script adds to them
local body = kel.RigidBody("body")
local frame, properties = body:getFrame(), body:getMassProperties()
body.note, frame.note = "mine", body
tolua.setpeer(properties, setmetatable({}, { __index = function() return 1 end }))
tolua.getpeer(properties)
tolua.cast(body, "const kel::RigidBody")
local standIn = {}
tolua.inherit(standIn, body)
kel.RigidBody.getName(standIn)
body:setName("another")
body:getUuid()
function kel.RigidBody:extra() return self:getId() end
body:extra()
kel.RigidBody.extra = nil

-- callbacks, also in a coroutine and when they fail
local sim = kelSDK.Simulation()
sim:add(kelCollide.Geometry(kelCollide.Plane()))
body:add(kelCollide.Geometry(kelCollide.Sphere(0.2)))
sim:add(body)
local listener = kelSDK.LuaStepEventListener()
function listener:pre() body:addForce(0, 0, 1) end
function listener:post() error("a callback fails") end
function listener:last() self.last = nil sim:remove(self) end
sim:add(listener)
coroutine.wrap(function()
  for _ = 1, 2 do sim:stepForward() coroutine.yield() end
end)()
sim:stepTo(0.1)
listener = listener.__kelLua__LuaCallback__
collectgarbage()
frame, properties, standIn, body, sim, listener = nil, nil, nil, nil, nil, nil
collectgarbage()
