-- Materials and contact materials as scripts see them.
describe("kel.ContactMaterial", function()
  local function make()
    local material = kel.Material("wood")
    return kel.ContactMaterial(material, material)
  end

  it("clamps friction, restitution and adhesion, and nothing else", function()
    local contact = make()
    for name, kept in pairs({
      Restitution = 0, WireFrictionCoefficient = 0, KinematicContactNodeVelocityScale = 0, Damping = -3,
      YoungsModulus = -3, ImpactCompliance = -3, RollingResistanceCoefficient = -3, TwistingResistanceCoefficient = -3,
      RollingResistanceCompliance = -3, TwistingResistanceCompliance = -3,
    }) do
      contact["set" .. name](contact, -3)
      assert.equal(kept, contact["get" .. name](contact), name)
    end
    contact:setAdhesion(-1, -2)
    assert.same({ 0, 0 }, { contact:getAdhesion(), contact:getAdhesiveOverlap() })
    assert.is_true(contact:setMinMaxElasticRestLength(0.1, 0.2))
    assert.is_false(contact:setMinMaxElasticRestLength(0.3, 0.2) or contact:setMinMaxElasticRestLength(0, 0.2))
    assert.same({ 0.1, 0.2 }, { contact:getMinElasticRestLength(), contact:getMaxElasticRestLength() })
  end)

  it("has two directions of friction and viscosity", function()
    local contact = make()
    for _, name in ipairs({ "FrictionCoefficient", "SurfaceViscosity" }) do
      local set, get = contact["set" .. name], contact["get" .. name]
      set(contact, 0.7)
      set(contact, 0.5, 0)
      assert.same({ 0.5, 0.7, 0.7 }, { get(contact), get(contact, 1), get(contact, 5) })
      set(contact, 0.3, 7)
      assert.same({ 0.3, 0.3 }, { get(contact, 0), get(contact, 1) })
      assert.error_matches(function() set(contact, 1, -1) end, "direction of friction")
    end
    contact:setFrictionCoefficient(-1)
    assert.same({ 0, 0 }, { contact:getFrictionCoefficient(0), contact:getFrictionCoefficient(1) })
    assert.equal(2, kel.ContactMaterial.BOTH_PRIMARY_AND_SECONDARY)
  end)

  it("keeps its settings", function()
    local contact = make()
    assert.equal(kel.ContactMaterial.REDUCE_GEOMETRY, contact:getContactReductionMode())
    contact:setContactReductionMode(kel.ContactMaterial.REDUCE_ALL)
    assert.equal(2, contact:getContactReductionMode())
    contact:setContactReductionBinResolution(260)
    assert.equal(4, contact:getContactReductionBinResolution())
    contact:setUseContactAreaApproach(true)
    assert.is_true(contact:getUseContactAreaApproach())
    contact:setEnableSurfaceFriction(false)
    assert.is_false(contact:getSurfaceFrictionEnabled())
    assert.is_nil(contact:getFrictionModel())
    local model = kel.BoxFrictionModel()
    contact:setFrictionModel(model)
    model = nil
    collectgarbage()
    assert.equal("BoxFrictionModel", contact:getFrictionModel():getClassName())
    contact:setFrictionModel(nil)
    assert.is_nil(contact:getFrictionModel())
    assert.equal("wood", contact:getMaterial1():getName())
    assert.equal(contact:getMaterial1(), contact:getMaterial2())
    assert.error_matches(function() kel.ContactMaterial(kel.Material("wood"), nil) end, "error in function")
  end)
end)

describe("kel.Material", function()
  it("is made of three parts", function()
    local material, name = kel.Material:new_local("wood", 0.25, 0.75)
    assert.equal("wood", name)
    assert.equal(0.25, material:getSurfaceMaterial():getRoughness())
    assert.equal(0.25, material:getBulkMaterial():getViscosity())
    material:getBulkMaterial():setDensity(600)
    material:getWireMaterial():setDampingBend(3)
    local copy = kel.Material("copy", material)
    assert.equal(600, copy:getBulkMaterial():getDensity())
    copy:getBulkMaterial():setDensity(700)
    assert.equal(600, material:getBulkMaterial():getDensity())
    assert.equal("wood", kel.Material(material):getName())
    assert.equal(3, kel.Material(material):getWireMaterial():getDampingBend())
    copy:getBulkMaterial():copy(material:getBulkMaterial())
    assert.equal(600, copy:getBulkMaterial():getDensity())
    assert.equal("default", kel.Material.getDefaultMaterial():getName())
    assert.equal(kel.Material.SURFACE_FRICTION, material:getFrictionType())
    material:setFrictionType(1)
    assert.equal(1, kel.Material(material):getFrictionType())
  end)

  it("weighs its bodies", function()
    local material = kel.Material("cork")
    material:getBulkMaterial():setDensity(200)
    local geometry = kelCollide.Geometry(kelCollide.Box(0.5, 0.5, 0.5))
    geometry:setMaterial(material)
    local body = kel.RigidBody(geometry)
    assert.near(200, body:getEntity().mass, 1e-9)
  end)

  it("is dirty from a change until contacts are computed from it", function()
    local material = kel.Material("wood")
    assert.is_true(material:isDirty())
    kel.ContactMaterial(material, material)
    assert.is_false(material:isDirty())
    for part, call in pairs({
      Surface = { "setAdhesion", 1, 2 }, Bulk = { "setPoissonsRatio", 0.1 }, Wire = { "setYoungsModulusBend", 1 },
    }) do
      local object = material["get" .. part .. "Material"](material)
      object[call[1]](object, unpack(call, 2))
      assert.is_true(object:isDirty() and material:isDirty())
      kel.ContactMaterial(material, material)
      assert.is_false(object:isDirty())
    end
  end)

  it("shows its numbers as attributes that only its functions change", function()
    local material = kel.Material("wood")
    local bulk = material:getBulkMaterial():getEntity()
    assert.equal(1000, bulk.density)
    assert.error_matches(function() bulk.density = 5 end, "read%-only")
    local contact = kel.ContactMaterial(material, material)
    contact:getEntity().restitution = 0.25
    assert.equal(0.25, contact:getRestitution())
    assert.equal(0.5, contact:getEntity().frictionCoefficient:x())
  end)
end)
