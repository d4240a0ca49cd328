-- Run by a stock interpreter: the kel tree comes by `require`, also from inside a coroutine that ends.
local loaded = coroutine.wrap(function() return require("kel") end)()
collectgarbage()
assert(type(loaded) == "table" and loaded == kel and require("kel") == kel)
assert(type(kelSDK) == "table" and type(kelCollide) == "table")

local sim, body = kelSDK.Simulation(), kel.RigidBody("box")
body:add(kelCollide.Geometry(kelCollide.Box(1, 1, 1)))
sim:add(body)
local listener, calls = kelSDK.LuaStepEventListener(), 0
function listener:post() calls = calls + 1 end
sim:add(listener)
for _ = 1, 60 do sim:stepForward() end
assert(calls == 60)
assert(math.abs(body:getVelocity():z() + 9.80665) < 1e-9, body:getVelocity():z())

for _ = 1, 1000 do
  local ok, text = pcall(body.setPosition, body, "a")
  assert(not ok and text:find("error in function 'setPosition'.", 1, true), text)
end
assert(not pcall(body.getPosition, nil))
-- The state closes with the simulation, its listener and a body in globals.
kept = { sim, listener, body }
