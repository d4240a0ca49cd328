-- A box falls on the ground, bounces and comes to rest.
local sim = kelSDK.Simulation()

-- A geometry without a body never moves: this plane is the ground, its normal points up.
sim:add(kelCollide.Geometry(kelCollide.Plane()))

-- A box of one cubic metre, by its half extents; its mass follows from its volume.
local box = kel.RigidBody("box")
box:add(kelCollide.Geometry(kelCollide.Box(0.5, 0.5, 0.5)))
box:setPosition(0, 0, 3)
sim:add(box)

print(" time [s]  height [m]  speed [m/s]")
for step = 0, 240 do
  if step % 12 == 0 then
    print(("%9.2f %11.4f %12.4f"):format(sim:getTimeStamp(), box:getPosition():z(), box:getVelocity():z()))
  end
  sim:stepForward()
end
