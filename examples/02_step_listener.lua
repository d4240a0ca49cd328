-- A step listener hears of every step: functions of the script that the engine calls.
local sim = kelSDK.Simulation()
sim:add(kelCollide.Geometry(kelCollide.Plane()))

local ball = kel.RigidBody("ball")
ball:add(kelCollide.Geometry(kelCollide.Sphere(0.2)))
ball:setPosition(0, 0, 2)
sim:add(ball)

local listener = kelSDK.LuaStepEventListener(kelSDK.StepEventListener.ALL)
local steps, highest = 0, 0

-- Before the solver: a side wind of 5 N.
function listener:pre(time)
  ball:addForce(5, 0, 0)
end

-- After it: the positions are new.
function listener:post(time)
  steps = steps + 1
  highest = math.max(highest, ball:getPosition():z())
end

function listener:removeNotification()
  print("the simulation let the listener go")
end

sim:add(listener)
for _ = 1, 120 do sim:stepForward() end
sim:remove(listener)

print(("steps heard: %d, highest point: %.3f m, drifted: %.3f m"):format(steps, highest, ball:getPosition():x()))
