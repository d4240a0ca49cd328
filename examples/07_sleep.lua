-- Two towers of boxes fall asleep, and one of them wakes when a ball hits it.
local sim = kelSDK.Simulation()
sim:add(kelCollide.Geometry(kelCollide.Plane()))

-- Two towers; what does not touch sleeps by itself.
local towers = { {}, {} }
for side, tower in ipairs(towers) do
  for height = 0, 4 do
    local box = kel.RigidBody(kelCollide.Geometry(kelCollide.Box(0.25, 0.25, 0.25)))
    box:setPosition(3 * side, 0, 0.25 + 0.5 * height)
    sim:add(box)
    tower[#tower + 1] = box
  end
end

-- One switch for all bodies of a simulation; any of them leads to it.
kel.AutoSleep(towers[1][1]:getSystem()):setEnable(true)

local function tell()
  local texts = {}
  for side, tower in ipairs(towers) do
    local asleep = 0
    for _, box in ipairs(tower) do
      if box:getAutoSleepProperties():isSleeping() then asleep = asleep + 1 end
    end
    texts[side] = ("%d of %d asleep in tower %d"):format(asleep, #tower, side)
  end
  print(("%5.2f s: %s"):format(sim:getTimeStamp(), table.concat(texts, ", ")))
end

tell()
sim:stepTo(2)
tell()

local ball = kel.RigidBody(kelCollide.Geometry(kelCollide.Sphere(0.2)))
ball:setPosition(0, 0, 1.5)
ball:setVelocity(20, 0, 0)
sim:add(ball)
sim:stepTo(2.3)
tell()
