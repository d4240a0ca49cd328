local function results(...) return {n = select("#", ...), ...} end
local function Type(name) return (kelData.getType(name)) end
local function Format(name) return (kelData.getFormat(name)) end
local NONE = 2 ^ 32 - 1

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
    assert.same({"3", "1 2 3", "a"},
      {attribute:getNumElements():toString(), attribute:getDefaultValue():toString(), attribute:fullName()})
    assert.is_nil(attribute:getEntity())
    attribute:setDefaultFormat(Format("Vec3f"))
    attribute:setDefaultValue(kel.Vec3Value(kel.Vec3(4)))
    assert.equal("4 4 4", attribute:getDefaultValue():toString())
    assert.error_matches(function() attribute:setDefaultValue(kel.RealValue(1)) end, "cannot take one of type Real")
    assert.error_matches(function() attribute:setDefaultFormat(Format("Real64")) end, "needs a format of its type")
    assert.error_matches(function() kelData.Attribute("a", nil) end, "attribute 'a' needs a type")
    assert.error_matches(function() kelData.Attribute("a", Type("Real"), nil, kel.RealValue(-1)) end, "number of elements")
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
    assert.error_matches(function() base:addAttribute(kelData.Attribute("x", Type("Real"))) end,
      "attribute 'x' cannot be added to entity model 'Ball'")
    assert.error_matches(function() derived:addAttribute(kelData.Attribute("mass", Type("Real"))) end, "cannot be added")
    assert.error_matches(function() base:setBaseEntity(derived) end, "comes before its attributes")
    assert.equal("size_t", tolua.type(derived:getNumBytes()))
    assert.equal("size_t", tolua.type(derived:getNumBytes(nil)))
  end)

  it("is found by its full name while it lives", function()
    local model = ballModel("Game.Found")
    local found = results(kelData.getEntity("Game.Found"))
    assert.is_true(found.n == 2 and found[1] == model and found[2] == "Game.Found")
    assert.same({n = 2, true, "Game.Found"}, results(kelData.hasEntity("Game.Found")))
    model, found = nil, nil
    collectgarbage() collectgarbage()
    assert.same({n = 2, false, "Game.Found"}, results(kelData.hasEntity("Game.Found")))
    assert.is_truthy((kelData.getEntity("Physics.RigidBody")))
    assert.equal("kel::Model", tolua.type(kelData.EntityModel.getRootModel()))
  end)

  it("has switches, a storage and no code behind it", function()
    local model = ballModel()
    assert.same({true, false}, {model:useInstanceTable(), model:hasConstructor()})
    assert.is_nil(model:getSource())
    assert.is_false(kelData.EntityModel:getThreadSafe())
    model:setUseInstanceTable(false)
    local storage = model:getDefaultStorage()
    assert.is_true(storage:getEntityModel() == model and not storage:useInstanceTable())
    assert.equal("kelData::EntityData", tolua.type(model:createData(storage)))
    assert.error_matches(function() ballModel():createData(storage) end, "is not one of entity model 'Ball'")
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
    assert.error_matches(function() range:at(4) end, "index of an entity is out of range")
    storage:destroyInstance(one)
    storage:destroyInstance(one:getId())
    assert.same({4, false, true}, {storage:size(), one:isValid(), range:at(2):isValid()})
    assert.error_matches(function() range:at(3) end, "index of an entity is out of range")
  end)

  it("keeps ids when rows move", function()
    local pointers = {}
    for i = 1, 4 do
      pointers[i] = storage:createInstance()
      pointers[i]:setValue("mass", i)
    end
    pointers[1]:destroy()
    assert.same({0, 4}, {pointers[4]:calculateIndex(), pointers[4]:getValue("mass")})
    assert.same({NONE, pointers[4]:getId()}, {storage:idToIndex(pointers[1]:getId()), storage:indexToId(0)})
    assert.equal(NONE, storage:indexToId(3))
    storage:verifyConsistency()
  end)

  it("has ids that are rows without the table", function()
    storage:setUseInstanceTable(false)
    storage:createInstances(3)
    storage:destroyInstance(1)
    assert.same({NONE, 2, 3}, {storage:idToIndex(1), storage:idToIndex(2), storage:getInstances():size()})
    assert.is_false(storage:getInstances():at(1):isValid())
    assert.error_matches(function() storage:setUseInstanceTable(true) end, "entity storage 'Ball' has rows already")
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
    assert.error_matches(function() storage:createInstances(-1) end, "entity storage 'Ball' is full")
    assert.error_matches(function() storage:reserve(-1) end, "cannot have more than %d+ elements")
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
    for _, name in ipairs {"copyInstance", "transferInstance"} do
      assert.error_matches(function() storage[name](storage, old) end, "the entity of an entity pointer is gone")
    end
    assert.error_matches(function() old:copy() end, "is gone")
    assert.error_matches(function() one:transfer(nil) end, "error in function 'transfer'%.")
  end)

  it("has buffers, and takes attributes of its own", function()
    storage:createInstance()
    assert.equal(1, storage:getBuffer("mass"):size())
    assert.is_true(storage:getBuffer(model:getAttribute("mass")) == storage:getBuffer("mass"))
    assert.is_true(storage:getBuffer("mass"):getStorage() == storage)
    assert.is_nil(storage:getBuffer("charge"))
    assert.error_matches(function() storage:getBuffer("mass"):resize(3) end, "has the size of its entity storage")
    storage:addCustomAttribute(kelData.Attribute("charge", Type("Int"), nil, nil, kel.IntValue(7)))
    assert.equal(7, storage:getInstances():front():getValue("charge"))
    assert.error_matches(function() storage:addCustomAttribute(kelData.Attribute("mass", Type("Int"))) end, "of that name")
    assert.equal("const kelData::BufferTable", tolua.type(storage:getBuffers()))
  end)

  it("may go before its pointers and arrays", function()
    local one, array, range = storage:createInstance(), storage:getInstances(), storage:createInstances(2)
    local value = kelData.EntityPtrValue(one)
    storage, model = nil, nil
    collectgarbage() collectgarbage()
    assert.same({false, false, "none"}, {one:isValid(), array:at(0):isValid(), value:toString()})
    assert.is_nil(one:getStorage())
    assert.error_matches(function() range:at(0) end, "out of range")
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
    local id = storage:createInstance():getId()
    none:init(storage, id)
    assert.is_true(none:isValid())
    none:init(nil, id)
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
    assert.error_matches(function() one:setValue("ends", {kel.Vec3f(3), 4}) end, "invalid type in variable assignment%.")
    assert.is_true(one:getValue("ends")[1] == kel.Vec3f(1))
    for _, wrong in ipairs {"x", {}, false} do
      assert.error_matches(function() one:setValue("mass", wrong) end, "invalid type in variable assignment%.")
    end
    assert.error_matches(function() one:setValue("mass") end, "invalid type in variable assignment%.")
    assert.error_matches(function() one:getValue("weight") end, "the entity has no attribute 'weight'")
    assert.error_matches(function() one.getValue({}, "mass") end, "error in function 'getValue'%.")
    assert.error_matches(function() one:getValue({}) end, "error in function 'getValue'%.")
    one:destroy()
    assert.error_matches(function() one:getValue("mass") end, "attribute 'mass' of an entity that is gone")
  end)

  it("reads attributes that all instances share", function()
    local model = kelData.EntityModel("Game.Shared")
    model:addAttribute(kelData.SharedAttribute("half", Format("Real64"), "1/2"))
    model:addAttribute(kelData.SharedAttribute("lost", Format("Real64"), "nowhere"))
    local storage = kelData.EntityStorage(model)
    local one = storage:createInstance()
    assert.equal(0.5, one:getValue("half"))
    assert.is_nil(storage:getBuffer("half"))
    assert.error_matches(function() one:getValue("lost") end, "'nowhere' is no number that is known here")
    assert.error_matches(function() one:setValue("half", 1) end, "attribute 'half' is read%-only")
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
    assert.error_matches(function() entity.velocity = 3 end, "invalid type in variable assignment%.")
    assert.error_matches(function() entity.mass = 3 end, "attribute 'mass' is read%-only")
    assert.error_matches(function() entity:setValue("mass", 3) end, "attribute 'mass' is read%-only")
    body = nil
    collectgarbage() collectgarbage()
    assert.is_false(entity:isValid())
    assert.error_matches(function() return entity.velocity end, "attribute 'velocity' of an entity that is gone")
    assert.error_matches(function() entity.velocity = kel.Vec3() end, "attribute 'velocity' of an entity that is gone")
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
