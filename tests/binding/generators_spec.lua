local function draw(generator, count)
  local list = {}
  for i = 1, count do list[i] = generator:rand() end
  return list
end

for name, whole in pairs {UniformRealGenerator = false, UniformIntGenerator = true} do
  describe("kel."..name, function()
    local class = kel[name]

    it("gives the same numbers for the same seed and bounds", function()
      assert.same(draw(class(7, -10, 10), 50), draw(class(7, -10, 10), 50))
      assert.not_same(draw(class(7, -10, 10), 50), draw(class(8, -10, 10), 50))
      assert.same(draw(class(-10, 10), 50), draw(class(5489, -10, 10), 50))
      assert.same(draw(class(2 ^ 32 + 7, -10, 10), 50), draw(class(7, -10, 10), 50))
      assert.same(draw(class(), 5), draw(class(0, whole and 2 ^ 31 - 1 or 1), 5))
    end)

    it("stays in its bounds, in whatever order they come", function()
      for _, generator in ipairs {class(2, 5), class(5, 2), class(1, 5, 2)} do
        for _, number in ipairs(draw(generator, 200)) do
          assert.is_true(number >= 2 and number <= 5)
          assert.equal(whole, number % 1 == 0)
        end
      end
    end)
  end)
end

describe("kel.Uuid", function()
  local TEXT = "01234567-89ab-cdef-0123-456789abcdef"

  it("is written as it is read, and gives the text again", function()
    local id, text = kel.Uuid:new_local(TEXT)
    assert.equal(TEXT, id:str())
    assert.equal(TEXT, text)
    assert.equal("Uuid("..TEXT..")", tostring(id))
    assert.is_true(kel.Uuid(TEXT:upper()) == id)
    assert.equal("00000000-0000-0000-0000-000000000000", kel.Uuid():str())
  end)

  it("is null for anything else", function()
    for _, text in ipairs {"", "body", TEXT.."0", 17} do assert.is_true(kel.Uuid(text) == kel.Uuid()) end
  end)

  it("is ordered, and equal where all bytes are", function()
    local a, b = kel.Uuid(TEXT), kel.Uuid("01234567-89ab-cdef-0123-456789abcdff")
    assert.is_true(a == kel.Uuid(TEXT) and a ~= b)
    assert.is_true(a < b and not (b < a) and not (a < a))
    assert.is_true(kel.Uuid() < a)
  end)

  it("has sixteen bytes", function()
    assert.equal(16, kel.Uuid.size())
    assert.is_userdata(kel.Uuid():Uuid__data())
  end)

  it("comes from names and generators", function()
    local id, name = kel.Uuid.generateFromString("kel")
    assert.equal("kel", name)
    assert.is_true(id == kel.Uuid.generateFromString("kel"))
    assert.is_false(id == kel.Uuid.generateFromString("lek"))
    local generator = kel.UuidGenerator:new()
    assert.is_false(generator:generate() == generator:generate())
    generator:delete()
    assert.error_matches(function() generator:generate() end, "invalid 'self' in function 'generate'")
  end)

  it("is that of an object for all its life", function()
    local body = kel.RigidBody()
    assert.is_true(body:getUuid() == body:getUuid())
    assert.is_false(body:getUuid() == kel.RigidBody():getUuid())
  end)
end)

for _, name in ipairs {"Timer", "HighAccuracyTimer"} do
  describe("kel."..name, function()
    local function wait(timer)
      local before = timer:getTime()
      while timer:getTime() < before + 0.002 do end
    end

    it("adds up the times that it runs", function()
      local timer = kel[name]()
      assert.is_false(timer:isRunning())
      assert.equal(0, timer:getTime())
      timer:start()
      assert.is_true(timer:isRunning())
      wait(timer)
      assert.equal(0, timer:getNumTicks())
      timer:stop()
      local time, ticks = timer:getTime(), timer:getNumTicks()
      assert.is_true(time >= 0.002 and ticks > 0)
      timer:stop()
      assert.same({time, ticks}, {timer:getTime(), timer:getNumTicks()})
      timer:start()
      wait(timer)
      assert.equal(ticks, timer:getNumTicks())
      assert.is_true(timer:getTime() >= time + 0.002)
    end)

    it("goes back to 0", function()
      local timer = kel[name](true)
      assert.is_true(timer:isRunning())
      wait(timer)
      timer:reset()
      assert.is_false(timer:isRunning())
      assert.same({0, 0}, {timer:getTime(), timer:getNumTicks()})
      assert.equal(name.."(0 s)", tostring(timer))
      timer:reset(true)
      assert.is_true(timer:isRunning())
      assert.truthy(tostring(timer):find("^"..name.."%([%d.e-]+ s, running%)$"))
    end)
  end)
end
