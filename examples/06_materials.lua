-- A box of rubber and a box of ice slide over the ground; a material says how far.
local sim = kelSDK.Simulation()
local stone = kel.Material("stone")
local ground = kelCollide.Geometry(kelCollide.Plane())
ground:setMaterial(stone)
sim:add(ground)

local function slider(material, y)
  local geometry = kelCollide.Geometry(kelCollide.Box(0.5, 0.5, 0.2))
  geometry:setMaterial(material)
  local box = kel.RigidBody(geometry)
  box:setPosition(0, y, 0.2)
  box:setVelocity(4, 0, 0)
  sim:add(box)
  return box
end

-- A material by its coefficient of friction and its restitution; the ground's count as well.
local rubber = slider(kel.Material("rubber", 1.0, 0.5), 0)

-- Ice on this stone, whatever both are elsewhere.
local ice = kel.Material("ice")
local iceOnStone = kel.ContactMaterial(ice, stone)
iceOnStone:setFrictionCoefficient(0.1)
sim:add(iceOnStone)
local block = slider(ice, 3)

sim:stepTo(10)
print(("rubber slid %.2f m, ice %.2f m"):format(rubber:getPosition():x(), block:getPosition():x()))
