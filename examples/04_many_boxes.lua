-- A thousand boxes and spheres fall into a heap; prints what a step costs.
-- Arguments: the number of bodies (1000) and of steps (300).
local count, steps = tonumber(arg[1]) or 1000, tonumber(arg[2]) or 300
local sim = kelSDK.Simulation()
sim:add(kelCollide.Geometry(kelCollide.Plane()))

local bodies = {}
for i = 0, count - 1 do
  local shape = i % 2 == 0 and kelCollide.Box(0.25, 0.25, 0.25) or kelCollide.Sphere(0.25)
  local body = kel.RigidBody()
  body:add(kelCollide.Geometry(shape))
  -- Layers of ten by ten, each a little askew so that the towers fall.
  local layer = math.floor(i / 100)
  body:setPosition((i % 10) * 0.6 + layer * 0.05, (math.floor(i / 10) % 10) * 0.6, 0.4 + layer * 0.6)
  sim:add(body)
  bodies[#bodies + 1] = body
end

local started = os.clock()
for _ = 1, steps do sim:stepForward() end
local spent = os.clock() - started

local highest, fastest = 0, 0
for _, body in ipairs(bodies) do
  highest = math.max(highest, body:getPosition():z())
  fastest = math.max(fastest, body:getVelocity():length())
end
print(("%d bodies, %d steps: %.2f ms a step"):format(count, steps, 1000 * spent / steps))
print(("highest %.2f m, fastest %.2f m/s"):format(highest, fastest))
