local support = require("tests.binding.support")
local results, fails, refuses, collect = support.results, support.fails, support.refuses, support.collect
local function Type(name) return (kelData.getType(name)) end
local function Format(name) return (kelData.getFormat(name)) end
local NONE = 2 ^ 32 - 1
local WRONG = "invalid type in variable assignment."

--- A model with a number, a text and two vectors.
local function ballModel(name)
  local model = kelData.EntityModel(name or "Game.Ball")
  model:addAttribute(kelData.Attribute("mass", Type("Real"), nil, nil, kel.RealValue(2.5)))
  model:addAttribute(kelData.ScalarAttribute("label", Type("String")))
  model:addAttribute(kelData.ScalarAttribute("ends", Type("Vec3"), Format("Vec3f"), kel.IntValue(2)))
  return model
end

describe("attributes", function()
  it("give their names back", function()
    local real, entity, format = Type("Real"), Type("EntityPtr"), Format("Real64")
    for class, arguments in pairs {
      Attribute = {"a", real}, ScalarAttribute = {"a", real, format, nil, nil}, PointerAttribute = {"a", entity},
    } do
      local made = results(kelData[class]:new_local(unpack(arguments, 1, class == "ScalarAttribute" and 5 or 2)))
      assert.same({2, "kelData::"..class, "a"}, {made.n, tolua.type(made[1]), made[2]})
    end
    local made = results(kelData.SharedAttribute:new_local("a", format, "2*b"))
    assert.same({3, "a", "2*b", "2*b"}, {made.n, made[2], made[3], made[1]:getExpression()})
  end)

  it("tell what they are", function()
    local attribute = kelData.Attribute("a", Type("Vec3"), nil, kel.IntValue(3), kel.Vec3Value(kel.Vec3(1, 2, 3)))
    assert.equal("kel::Index", tolua.type(attribute:getId()))
    assert.is_true(attribute:getType() == Type("Vec3") and attribute:getDefaultFormat() == Format("Vec3d"))
    assert.equal("3", attribute:getNumElements():toString())
    assert.is_nil(attribute:getEntity())
    attribute:setDefaultValue(kel.Vec3Value(kel.Vec3(4)))
    assert.equal("4 4 4", attribute:getDefaultValue():toString())
    fails("cannot take one of type Real", attribute.setDefaultValue, attribute, kel.RealValue(1))
    fails("attribute 'a' needs a type", kelData.Attribute, "a", nil)
  end)
end)

describe("kelData.EntityModel", function()
  it("has its base's attributes first", function()
    local base, derived = ballModel(), kelData.EntityModel("Game.Fast.Ball")
    derived:setBaseEntity(base)
    derived:addAttribute(kelData.Attribute("speed", Type("Real")))
    assert.equal("const kelData::AttributePtrVector", tolua.type(derived:getAttributes()))
    assert.is_true(derived:getAttribute("mass"):getEntity() == base)
    assert.equal("Game.Fast.Ball.speed", derived:getAttribute("speed"):fullName())
    assert.is_nil(derived:getAttribute("weight"))
    fails("attribute 'x' cannot be added to entity model 'Ball'", base.addAttribute, base, kelData.Attribute("x", Type("Real")))
    fails("cannot be added", derived.addAttribute, derived, kelData.Attribute("mass", Type("Real")))
    fails("comes before its attributes", base.setBaseEntity, base, derived)
    assert.equal("size_t", tolua.type(derived:getNumBytes(nil)))
  end)

  it("is found by its full name while it lives", function()
    local model = ballModel("Game.Found")
    local found = results(kelData.getEntity("Game.Found"))
    assert.is_true(found.n == 2 and found[1] == model and found[2] == "Game.Found")
    model, found = nil, nil
    collect()
    assert.same({n = 2, false, "Game.Found"}, results(kelData.hasEntity("Game.Found")))
    assert.is_truthy((kelData.getEntity("Physics.RigidBody")))
    assert.equal("kel::Model", tolua.type(kelData.EntityModel.getRootModel()))
  end)

  it("has switches, a storage and no code behind it", function()
    local model = ballModel()
    assert.same({true, false}, {model:useInstanceTable(), model:hasConstructor()})
    assert.is_nil(model:getSource())
    model:setUseInstanceTable(false)
    local storage = model:getDefaultStorage()
    assert.is_true(storage:getEntityModel() == model and not storage:useInstanceTable())
    assert.equal("kelData::EntityData", tolua.type(model:createData(storage)))
  end)
end)

describe("kelData.EntityStorage", function()
  local model, storage
  before_each(function()
    model = ballModel()
    storage = kelData.EntityStorage(model)
  end)

  it("makes and ends instances", function()
    assert.same({true, 0}, {storage:empty(), storage:size()})
    local one = storage:createInstance()
    local range = storage:createInstances(4)
    assert.same({"kelData::EntityPtr", "kelData::EntityRange", 5},
      {tolua.type(one), tolua.type(range), storage:size()})
    assert.equal(2, range:at(1):calculateIndex())
    storage:destroyInstance(one)
    storage:destroyInstance(one:getId())
    assert.same({4, false, true}, {storage:size(), one:isValid(), range:at(2):isValid()})
    fails("index of an entity is out of range", range.at, range, 3)
  end)

  it("keeps ids when rows move", function()
    local pointers = {}
    for i = 1, 4 do
      pointers[i] = storage:createInstance()
      pointers[i]:setValue("mass", i)
    end
    pointers[1]:destroy()
    assert.same({0, 4}, {pointers[4]:calculateIndex(), pointers[4]:getValue("mass")})
    assert.same({NONE, pointers[4]:getId(), NONE},
      {storage:idToIndex(pointers[1]:getId()), storage:indexToId(0), storage:indexToId(3)})
    storage:verifyConsistency()
    fails("entity storage 'Ball' has rows already", storage.setUseInstanceTable, storage, false)
  end)

  it("has a size and memory", function()
    storage.sizeParameter = kel.RealBuffer().sizeParameter
    assert.equal("kelData::ValueRefT<kel::UInt>", tolua.type(storage.capacityParameter))
    storage:reserve(100)
    assert.same({100, 100 * (8 + 32 + 2 * 16)}, {storage:capacity(), storage:getNumBytes()})
    assert.same({100, 300}, {storage:presize(50, 1000), storage:presize(200, 100)})
    storage:resize(10, true)
    assert.equal(2.5, storage:getInstances():back():getValue("mass"))
    storage:resize(3, false)
    storage:clear()
    assert.same({0, 300}, {storage:size(), storage:capacity()})
    fails("entity storage 'Ball' is full", storage.createInstances, storage, -1)
    fails("cannot have more than ", storage.reserve, storage, -1)
  end)

  it("copies instances and moves them to other storages", function()
    local other = kelData.EntityStorage(ballModel())
    local one = storage:createInstance()
    one:setValue("label", "one")
    local copy = one:copy()
    assert.same({"one", 2}, {copy:getValue("label"), storage:size()})
    assert.equal("one", one:copy(other):getValue("label"))
    assert.equal("one", storage:copyInstance(copy):getValue("label"))
    assert.equal("one", storage:copyInstance(copy:getId()):getValue("label"))
    local old = kelData.EntityPtr(storage, one:getId())
    one:transfer(other)
    assert.is_true(one:getStorage() == other and not old:isValid())
    assert.equal("one", other:transferInstance(copy):getValue("label"))
    assert.same({2, 3}, {storage:size(), other:size()})
    local blank = storage:createInstance()
    blank:copyAttributes(one)
    assert.equal("one", blank:getValue("label"))
    fails("the entity of an entity pointer is gone", storage.copyInstance, storage, old)
    fails("is gone", old.copy, old)
    refuses("transfer", one.transfer, one, nil)
  end)

  it("has buffers, and takes attributes of its own", function()
    storage:createInstance()
    assert.equal(1, storage:getBuffer("mass"):size())
    assert.is_true(storage:getBuffer(model:getAttribute("mass")) == storage:getBuffer("mass"))
    assert.is_true(storage:getBuffer("mass"):getStorage() == storage)
    assert.is_nil(storage:getBuffer("charge"))
    storage:addCustomAttribute(kelData.Attribute("charge", Type("Int"), nil, nil, kel.IntValue(7)))
    assert.equal(7, storage:getInstances():front():getValue("charge"))
    assert.equal("const kelData::BufferTable", tolua.type(storage:getBuffers()))
  end)

  it("may go before its pointers and arrays", function()
    local one, array, range = storage:createInstance(), storage:getInstances(), storage:createInstances(2)
    local value = kelData.EntityPtrValue(one)
    storage, model = nil, nil
    collect()
    assert.same({false, false, "none"}, {one:isValid(), array:at(0):isValid(), value:toString()})
    assert.is_nil(one:getStorage())
    fails("out of range", range.at, range, 0)
    one:destroy()
    one:print()
  end)
end)

describe("kelData.EntityPtr", function()
  it("names nothing at first", function()
    local none = kelData.EntityPtr()
    assert.same({false, NONE, NONE}, {none:isValid(), none:getId(), none:calculateIndex()})
    assert.is_nil(none:getStorage())
    assert.same({"none", "#12"}, {kelData.EntityPtr.TransformToAscii(-1), kelData.EntityPtr.TransformToAscii(12)})
    local storage = kelData.EntityStorage(ballModel())
    none:init(storage, storage:createInstance():getId())
    assert.is_true(none:isValid())
    none:init(nil, 0)
    assert.is_false(none:isValid())
  end)

  it("lies in vectors, arrays, buffers and values as a copy", function()
    local storage = kelData.EntityStorage(ballModel())
    local one = storage:createInstance()
    local vector, buffer = kelData.EntityPtrVector(1), kelData.EntityPtrBuffer()
    vector:push_back(one)
    buffer:push_back(one)
    assert.same({false, true, true, true},
      {vector:front():isValid(), vector:back():isValid(), buffer:back():isValid(), kelData.EntityPtrValue(one):get():isValid()})
    one:destroy()
    assert.same({false, false}, {vector:back():isValid(), buffer:back():isValid()})
  end)

  it("reads and writes values by name", function()
    local storage = kelData.EntityStorage(ballModel())
    local one = storage:createInstance()
    assert.same({2.5, ""}, {one:getValue("mass"), one:getValue("label")})
    one:setValue("ends", {kel.Vec3f(1), kel.Vec3f(2)})
    assert.is_true(one:getValue("ends")[2] == kel.Vec3f(2))
    fails(WRONG, one.setValue, one, "ends", {kel.Vec3f(3), 4})
    assert.is_true(one:getValue("ends")[1] == kel.Vec3f(1))
    for _, wrong in ipairs {"x", {}, false} do fails(WRONG, one.setValue, one, "mass", wrong) end
    fails(WRONG, one.setValue, one, "mass")
    fails("the entity has no attribute 'weight'", one.getValue, one, "weight")
    refuses("getValue", one.getValue, {}, "mass")
    refuses("getValue", one.getValue, one, {})
    one:destroy()
    fails("attribute 'mass' of an entity that is gone", one.getValue, one, "mass")
  end)

  it("reads attributes that all instances share", function()
    local model = kelData.EntityModel("Game.Shared")
    model:addAttribute(kelData.SharedAttribute("half", Format("Real64"), "1/2"))
    model:addAttribute(kelData.SharedAttribute("lost", Format("Real64"), "nowhere"))
    local storage = kelData.EntityStorage(model)
    local one = storage:createInstance()
    assert.equal(0.5, one:getValue("half"))
    assert.is_nil(storage:getBuffer("half"))
    fails("'nowhere' is no number that is known here", one.getValue, one, "lost")
    fails("attribute 'half' is read-only", one.setValue, one, "half", 1)
  end)
end)

describe("pointers to the engine's entities", function()
  it("have the attributes as variables", function()
    local body = kel.RigidBody()
    local entity = body:getEntity()
    assert.equal("kel::Physics::RigidBodyPtr", tolua.type(entity))
    body:setVelocity(1, 2, 3)
    assert.is_true(entity.velocity == kel.Vec3(1, 2, 3))
    entity.velocity = kel.Vec3(4, 5, 6)
    assert.is_true(body:getVelocity() == kel.Vec3(4, 5, 6))
    entity.velocity:set(7, 8, 9) -- a copy
    assert.is_true(body:getVelocity() == kel.Vec3(4, 5, 6))
    body:setPosition(1, 1, 1)
    assert.is_true(entity.position == kel.Vec3(1, 1, 1) and entity:getValue("mass") == 1)
    fails(WRONG, function() entity.velocity = 3 end)
    fails("attribute 'mass' is read-only", function() entity.mass = 3 end)
    fails("attribute 'mass' is read-only", entity.setValue, entity, "mass", 3)
    body = nil
    collect()
    assert.is_false(entity:isValid())
    fails("attribute 'velocity' of an entity that is gone", function() return entity.velocity end)
    fails("attribute 'velocity' of an entity that is gone", function() entity.velocity = kel.Vec3() end)
  end)

  it("leave the rows to their objects", function()
    local body, free = kel.RigidBody(), kelData.EntityStorage(ballModel())
    local entity = body:getEntity()
    local storage = entity:getStorage()
    local mine = free:createInstance()
    for name, call in pairs {
      destroy = function() entity:destroy() end, transfer = function() entity:transfer(free) end,
      init = function() entity:init(free, 0) end, copy = function() entity:copy() end,
      copyAttributes = function() entity:copyAttributes(mine) end,
      take = function() free:transferInstance(entity) end, give = function() mine:transfer(storage) end,
      create = function() storage:createInstance() end, clear = function() storage:clear() end,
      resize = function() storage:resize(0, true) end, destroyInstance = function() storage:destroyInstance(entity) end,
    } do
      assert.error_matches(call, "the rows of entity storage 'RigidBody' belong to objects", nil, nil, name)
    end
    assert.is_true(entity:isValid() and mine:isValid())
    assert.equal(1, entity:copy(kelData.EntityStorage(storage:getEntityModel())):getValue("mass"))
  end)

  it("show geometries and contacts", function()
    local entity = kelCollide.Geometry(kelCollide.Box(1, 1, 1)):getEntity()
    assert.equal("kel::Physics::GeometryPtr", tolua.type(entity))
    for _, name in ipairs {"RigidBody", "Geometry", "GeometryContact", "ContactPoint"} do
      assert.is_table(kel.Physics[name.."Ptr"])
    end
    assert.is_function(kel.Physics.ContactPointPtr.isValid)
  end)
end)
