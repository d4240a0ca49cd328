-- A script in the place of the engine's step listener.
local shell = require("tests.shell")

local function listening(mask)
  local sim = kelSDK.Simulation()
  local listener = kelSDK.LuaStepEventListener(mask or kelSDK.StepEventListener.ALL)
  return sim, listener
end

describe("LuaStepEventListener", function()
  it("hears of the events in its mask, in the order of the step, with the time", function()
    local sim, listener = listening()
    local heard = {}
    for _, event in ipairs({ "preCollide", "pre", "post", "last" }) do
      listener[event] = function(self, time, more)
        assert.equal(listener, self)
        assert.is_nil(more)
        heard[#heard + 1] = ("%s %.3f"):format(event, time)
      end
    end
    assert.is_true(sim:add(listener))
    sim:setTimeStep(0.5)
    sim:stepForward()
    assert.same({ "preCollide 0.000", "pre 0.000", "post 0.000", "last 0.500" }, heard)
    listener:setMask(kelSDK.StepEventListener.LAST_STEP)
    sim:stepForward()
    assert.equal(5, #heard)
    assert.equal("last 1.000", heard[5])
  end)

  it("has the mask that it was made with, truncated", function()
    assert.equal(6, kelSDK.LuaStepEventListener():getMask())
    assert.equal(1, kelSDK.LuaStepEventListener(1.9):getMask())
    assert.equal(6, kelSDK.LuaStepEventListener(nil):getMask())
    local listener = kelSDK.LuaStepEventListener:new_local(15)
    kelSDK.EventListener.setMask(listener, 8)
    assert.equal(8, listener:getMask())
    assert.equal(kelSDK.EventListener.STEP_EVENT_LISTENER, listener:getType())
    assert.equal("LuaStepEventListener", listener:getClassName())
  end)

  it("refuses wrong arguments and makes nothing", function()
    for _, bad in ipairs({ { "x" }, { {} }, { 1, 2 } }) do
      assert.error_matches(function() kelSDK.LuaStepEventListener:new(unpack(bad)) end, "error in function 'new'%.")
    end
    local pseudo = kelSDK.LuaStepEventListener[".get"]["__kelLua__LuaCallback__"]
    assert.error_matches(function() pseudo(nil) end, "invalid 'self' in accessing variable '__kelLua'")
    local other = kelSDK.LuaStepEventListener()["__kelLua__LuaCallback__"]
    assert.equal("kelLua::LuaCallback", tolua.type(other))
  end)

  it("costs nothing without functions, and finds functions that come and go", function()
    local sim, listener = listening()
    sim:add(listener)
    sim:stepForward()
    local calls = 0
    function listener:post() calls = calls + 1 end
    sim:stepForward()
    function listener:post() calls = calls + 10 end
    sim:stepForward()
    listener.post = nil
    sim:stepForward()
    assert.equal(11, calls)
  end)

  it("is told when a simulation takes it and lets it go", function()
    local sim, listener = listening()
    local told = {}
    function listener:addNotification() told[#told + 1] = self:getSimulation() == sim and "added" or "?" end
    function listener:removeNotification() told[#told + 1] = "removed" end
    assert.is_true(sim:add(listener))
    assert.is_false(sim:add(listener))
    assert.is_true(sim:remove(listener))
    assert.is_false(sim:remove(listener))
    assert.same({ "added", "removed" }, told)
  end)

  it("may change the simulation from inside an event", function()
    local sim, first = listening()
    local second = kelSDK.LuaStepEventListener(15)
    local heard = {}
    function second:post() heard[#heard + 1] = "second" end
    function first:post()
      heard[#heard + 1] = "first"
      sim:remove(self)
      sim:add(second)
      collectgarbage()
    end
    sim:add(first)
    first = nil
    sim:stepForward()
    sim:stepForward()
    sim:stepForward()
    assert.equal("first", heard[1])
    assert.equal("second", heard[#heard])
    local count = 0
    for _, who in ipairs(heard) do count = count + (who == "first" and 1 or 0) end
    assert.equal(1, count)
  end)

  it("hears higher priorities first", function()
    local sim = kelSDK.Simulation()
    local order = {}
    for _, priority in ipairs({ 50, 0, 100, 50.9 }) do
      local listener = kelSDK.LuaStepEventListener()
      function listener:post() order[#order + 1] = priority end
      assert.is_true(sim:add(listener, priority))
    end
    sim:stepForward()
    assert.same({ 100, 50, 50.9, 0 }, order)
  end)
end)

describe("a callback that fails", function()
  local failing = [[
    local sim = kelSDK.Simulation()
    local listener = kelSDK.LuaStepEventListener()
    local body = kel.RigidBody()
    body:add(kelCollide.Geometry(kelCollide.Sphere(1)))
    sim:add(body)
    function listener:post(time)
      local nothing
      nothing.field = 1
    end
    sim:add(listener)
    for _ = 1, 3 do sim:stepForward() end
    print(sim:getTimeStamp() > 0.049, body:getVelocity():z() < 0)
  ]]

  it("logs one line a step, and the simulation goes on", function()
    local path = shell.script(failing)
    local run = shell.kel(path)
    assert.equal(0, run.status)
    local line = ("warning: %s:8: attempt to index local 'nothing' (a nil value)\n"):format(path)
    assert.equal(line:rep(3), run.err)
    assert.equal("true\ttrue\n", run.out)
  end)

  it("logs one line also when its error value fails itself", function()
    local text = failing:gsub("local nothing\n", ""):gsub("nothing%.field = 1", [[
      error(setmetatable({}, { __tostring = function() error("inner") end }))]])
    local run = shell.kel(shell.script(text))
    assert.equal("warning: (error object is a table value)\n", run.err:match("^[^\n]*\n"))
    assert.equal("true\ttrue\n", run.out)
  end)

  it("shows where it was called from when the user asks", function()
    local run = shell.kel("--traceback " .. shell.script(failing))
    assert.equal(0, run.status)
    assert.truthy(run.err:find("stack traceback:", 1, true))
  end)
end)

describe("the life of a listener", function()
  local function collect() for _ = 1, 3 do collectgarbage() end end

  it("ends with the script's variable, even when it captures itself", function()
    local weak = setmetatable({}, { __mode = "k" })
    do
      local listener = kelSDK.LuaStepEventListener:new_local()
      function listener:post() return listener end
      weak[listener.post] = true
    end
    collect()
    assert.is_nil(next(weak))
  end)

  it("goes on as long as a simulation holds it", function()
    local sim = kelSDK.Simulation()
    local calls = 0
    do
      local listener = kelSDK.LuaStepEventListener()
      function listener:post() calls = calls + 1 end
      sim:add(listener)
    end
    for _ = 1, 5 do
      collect()
      sim:stepForward()
    end
    assert.equal(5, calls)
    local before = collectgarbage("count")
    sim = nil
    collect()
    assert.is_true(collectgarbage("count") <= before)
  end)
end)
