local support = require("tests.binding.support")
local refuses = support.refuses

local function draw(generator, count)
  local list = {}
  for i = 1, count do list[i] = generator:rand() end
  return list
end

for name, whole in pairs {UniformRealGenerator = false, UniformIntGenerator = true} do
  it("kel."..name.." is made of a seed and bounds", function()
    local class = kel[name]
    assert.same(draw(class(7, -10, 10), 50), draw(class(2 ^ 32 + 7, -10, 10), 50))
    assert.not_same(draw(class(7, -10, 10), 50), draw(class(8, -10, 10), 50))
    assert.same(draw(class(-10, 10), 50), draw(class(5489, -10, 10), 50))
    assert.same(draw(class(), 5), draw(class(0, whole and 2 ^ 31 - 1 or 1), 5))
    for _, number in ipairs(draw(class(1, 5, 2), 50)) do
      assert.is_true(number >= 2 and number <= 5 and (number % 1 == 0) == whole)
    end
  end)
end

describe("kel.Uuid", function()
  local TEXT = "01234567-89ab-cdef-0123-456789abcdef"

  it("is written as it is read, and gives the text again", function()
    local id, text = kel.Uuid:new_local(TEXT)
    assert.same({TEXT, TEXT, "Uuid("..TEXT..")"}, {id:str(), text, tostring(id)})
    assert.is_true(kel.Uuid(17) == kel.Uuid())
    assert.equal(16, kel.Uuid.size())
    assert.is_userdata(kel.Uuid():Uuid__data())
  end)

  it("is ordered, and equal where all bytes are", function()
    local a, b = kel.Uuid(TEXT), kel.Uuid("01234567-89ab-cdef-0123-456789abcdff")
    assert.is_true(a == kel.Uuid(TEXT) and a ~= b)
    assert.is_true(a < b and not (b < a))
  end)

  it("comes from names, generators and objects", function()
    local id, name = kel.Uuid.generateFromString("kel")
    assert.equal("kel", name)
    assert.is_true(id == kel.Uuid.generateFromString("kel"))
    local generator, body = kel.UuidGenerator:new(), kel.RigidBody()
    assert.is_false(generator:generate() == generator:generate())
    generator:delete()
    support.fails("invalid 'self' in function 'generate'", generator.generate, generator)
    assert.is_true(body:getUuid() == body:getUuid())
    assert.is_false(body:getUuid() == kel.RigidBody():getUuid())
  end)
end)

for _, name in ipairs {"Timer", "HighAccuracyTimer"} do
  it("kel."..name.." starts, stops and goes back to 0", function()
    local timer = kel[name](true)
    assert.is_true(timer:isRunning() and not kel[name]():isRunning())
    while timer:getTime() < 0.002 do end
    timer:stop()
    assert.is_true(timer:getTime() >= 0.002 and timer:getNumTicks() > 0 and not timer:isRunning())
    timer:start()
    timer:reset()
    assert.same({false, 0, 0}, {timer:isRunning(), timer:getTime(), timer:getNumTicks()})
    assert.equal(name.."(0 s)", tostring(timer))
    timer:reset(true)
    assert.matches("^"..name.."%([%d.e-]+ s, running%)$", tostring(timer))
    support.fails("new(bool=0) -> kel::"..name, kel[name], 1)
    support.fails("reset(bool=0)", timer.reset, timer, 1)
  end)
end
