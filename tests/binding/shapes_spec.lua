local function vectorOf(class, values)
  local vector = class()
  for _, value in ipairs(values) do vector:push_back(value) end
  return vector
end

local CORNERS = {}
for i = 0, 7 do
  CORNERS[i + 1] = kel.Vec3(i % 2 - 0.5, math.floor(i / 2) % 2 - 0.5, math.floor(i / 4) - 0.5)
end
local TRIANGLES = {0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4, 2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5}

local function corners() return vectorOf(kel.Vec3Vector, CORNERS) end
local function triangles() return vectorOf(kel.UInt32Vector, TRIANGLES) end

describe("Shapes of triangles", function()
  it("give their parts, and errors for parts that they have not", function()
    local mesh, name = kelCollide.Trimesh:new(corners(), triangles(), "cube")
    assert.same({"cube", "cube", ""}, {name, mesh:getSourceName(), mesh:getWarnings()})
    assert.same({8, 12, 0}, {mesh:getNumVertices(), mesh:getNumTriangles(), mesh:getOptionsMask()})
    local triangle = mesh:getTriangle(2)
    assert.same({true, 2, 4}, {triangle:isValid(), triangle:getTriangleIndex(), triangle:getGlobalVertexIndex(0)})
    assert.near(1, triangle:getNormal():z(), 1e-15)
    assert.is_true(triangle:getHalfEdgePartner(1):isValid())
    assert.is_false(mesh:getTriangle(12):isValid())
    for _, call in ipairs {function() mesh:getVertex(8) end, function() mesh:getTriangleVertex(0, 3) end,
                           function() mesh:getTriangleNormal(12) end, function() mesh:getHalfEdgePartnerEdge(36) end,
                           function() mesh:getTriangle(12):getNormal() end, function() triangle:getVertex(3) end,
                           function() kelCollide.Mesh.FaceEdgeCirculator():getTriangle() end} do
      assert.error_matches(call, "index of a part of a mesh is out of range")
    end
    local edge = mesh:createFaceEdgeCirculator(2, 1)
    assert.same({true, false, 1}, {edge:isValid(), edge:atEnd(), edge:getLocalEdgeIndex()})
    local found = kel.UInt32Vector()
    mesh:calculatePossibleTriangleOverlapsAlongLineSegment(kel.Vec3(0.1, 0.2, 2), kel.Vec3(0.1, 0.2, 0), found)
    assert.equal(2, found:size())
  end)

  it("carry what falls on a height field", function()
    local heights = kel.RealVector()
    for i = 0, 24 do heights:push_back(0.25) end
    local field = kelCollide.HeightField(5, 5, 4, 4, heights)
    assert.same({5, 0.25, 1}, {field:getResolutionX(), field:getHeight(4, 4), field:getScale():x()})
    assert.error_matches(function() field:getHeight(5, 0) end, "outside the height field")
    assert.error_matches(function() return kelCollide.HeightField(1, 5, 4, 4) end, "2 to 25000 samples")
    local sim = kelSDK.Simulation()
    sim:add(kelCollide.Geometry(field))
    local shapes = {kelCollide.Capsule(0.1, 0.3), kelCollide.Cylinder(0.1, 0.3),
                    kelCollide.Convex(corners(), kel.UInt32Vector(), "cube")}
    for i, shape in ipairs(shapes) do
      local body = kel.RigidBody(kelCollide.Geometry(shape))
      body:setPosition(0, 1.3 * (i - 2), 1)
      sim:add(body)
      shapes[i] = body
    end
    for _ = 1, 240 do sim:stepForward() end
    for i, height in ipairs {0.1, 0.1, 0.5} do assert.near(0.25 + height, shapes[i]:getPosition():z(), 2e-3) end
  end)
end)

describe("Round shapes", function()
  it("have radius and height", function()
    local cylinder, radius, height = kelCollide.Cylinder:new_local(1, 2)
    assert.same({1, 2}, {radius, height})
    assert.near(2 * math.pi, cylinder:getVolume(), 1e-12)
    local capsule = kelCollide.Capsule(1, 2)
    capsule:setHeight(3)
    assert.near(3 * math.pi + 4 / 3 * math.pi, capsule:getVolume(), 1e-12)
    assert.equal(2.5, capsule:getSupportPoint(kel.Vec3(0, 1, 0)):y())
    local wire = kelCollide.WireShape(0.1, 1, kel.Vec3(1, 2, 3))
    assert.same({3, 0, kelCollide.Shape.WIRE_SHAPE}, {wire:getPreviousEndPoint0():z(), wire:getPreviousEndPoint1():z(), wire:getType()})
    local line = kelCollide.Line(kel.Vec3(1, 0, 0), kel.Vec3(0, 1, 0))
    line:setFirstPoint(kel.Vec3(2, 0, 0))
    assert.same({2, 0}, {line:getFirstPoint():x(), line:getVolume()})
  end)
end)

describe("Line clipping", function()
  it("writes the part inside to the interval", function()
    local inside = kel.Interval()
    assert.is_true(kelCollide.clipLineToBox(kel.Vec3(1, 2, 3), kel.Vec3(-5, 0, 0), kel.Vec3(1, 0, 0), inside))
    assert.same({4, 6}, {inside:minValue(), inside:maxValue()})
    assert.is_false(kelCollide.clipRayToSphere(1, kel.Vec3(3, 0, 0), kel.Vec3(1, 0, 0), inside))
    assert.equal(0, inside:minValue())
    assert.is_true(kelCollide.clipLineSegmentToPlane(1, 0, 1, kel.Vec3(0, 0, 0), kel.Vec3(1, 0, 0), inside))
    assert.error_matches(function() kelCollide.clipLineToSlab(1, 3, kel.Vec3(), kel.Vec3(1, 0, 0), inside) end, "an axis is 0, 1 or 2")
  end)
end)
