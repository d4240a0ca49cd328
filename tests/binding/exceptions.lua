-- Engine exceptions in any Lua program: INTERPRETER exceptions.lua INTERPRETER.
local interpreter, part = arg[1], arg[2]
require("kel")
require("test_module")

local function giveUp(how) test.giveUp(how or "now") return 1 end
local function line() return debug.getinfo(2, "l").currentline end
local here = line()
local function at(number, text) return arg[0]:match("[^/]*$") .. ":" .. number .. ": " .. text end
local function isError(found, number, text)
  assert(type(found) == "string" and found:sub(-#at(number, text)) == at(number, text), found)
end
local THROWS = here - 2

local parts = {}

-- Run by themselves, as they end the process or write to its log.
function parts.number()
  for _ = 1, 1000 do assert(not pcall(test.giveUp, "number")) end
  print("caught", test.countOpaque())
end
function parts.uncaught() giveUp("at last") end
function parts.listener()
  local sim, listener, calls = kelSDK.Simulation(), kelSDK.LuaStepEventListener(), 0
  function listener:post()
    calls = calls + 1
    giveUp("in step " .. calls)
  end
  sim:add(listener)
  for _ = 1, 3 do sim:stepForward() end
  print("calls", calls)
end
if part then return parts[part]() end

local function run(name)
  local pipe = assert(io.popen(("%s %s %s %s 2>&1"):format(interpreter, arg[0], interpreter, name)))
  local text = pipe:read("*a")
  pipe:close()
  return text
end

local function protectedCalls()
  local results = { pcall(giveUp) }
  assert(#results == 2 and results[1] == false)
  isError(results[2], THROWS, "gave up now")
  isError(select(2, pcall(giveUp, "memory")), THROWS, "std::bad_alloc")
  isError(select(2, pcall(giveUp, "twice")), THROWS, "gave up twice")
  isError(select(2, pcall(test.giveUp, "alone")), line(), "gave up alone")
  isError(select(2, pcall(function() return (test.Brittle(true)) end)), line(), "broke when made")
  isError(select(2, pcall(function() return test.Brittle(false) + 1 end)), line(), "broke when added to")
end

local function handlers()
  local ok, trace = xpcall(giveUp, debug.traceback)
  assert(not ok and trace:find(at(THROWS, "gave up now"), 1, true) and trace:find("in function 'giveUp'", 1, true), trace)
  local level
  assert(select(2, xpcall(giveUp, function(text)
    level = debug.getinfo(3, "l").currentline
    return { text }
  end))[1]:find("gave up now", 1, true))
  assert(level == THROWS, level)
end

local function coroutines()
  local thread = coroutine.create(function(...)
    local sum = coroutine.yield(...)
    assert(not pcall(giveUp))
    giveUp(coroutine.yield(sum + 1))
  end)
  assert(select("#", coroutine.resume(thread, 1, nil, nil)) == 4)
  assert(select(2, coroutine.resume(thread, 4)) == 5)
  local ok, text = coroutine.resume(thread, "there")
  assert(not ok and coroutine.status(thread) == "dead")
  isError(text, THROWS, "gave up there")
  assert(debug.traceback(thread):find("giveUp", 1, true))
  assert(not coroutine.resume(thread))
  isError(select(2, pcall(coroutine.wrap(giveUp), "wrapped")), THROWS, "gave up wrapped")
  local inner = coroutine.wrap(function() return select(2, coroutine.resume(coroutine.create(giveUp), "inside")) end)
  isError(inner(), THROWS, "gave up inside")
end

local function deepCalls(depth)
  if depth == 0 then return giveUp("deep") end
  local ok, text = pcall(deepCalls, depth - 1)
  assert(not ok)
  error(text, 0)
end

local bodies = test.bodies()
for _ = 1, 2000 do
  for _, block in ipairs({ protectedCalls, handlers, coroutines }) do block() end
  isError(select(2, pcall(deepCalls, 50)), THROWS, "gave up deep")
  local body = test.Body("kept")
  local ok, text = pcall(body.fail, body)
  isError(text, line() - 1, "the engine gave up")
  assert(not ok and body:getName() == "kept")
end
collectgarbage()
collectgarbage()
assert(test.countOpaque() == 0 and test.bodies() == bodies)

local log = run("listener")
for call = 1, 3 do assert(log:find(at(THROWS, "gave up in step " .. call .. "\n"), 1, true), log) end
assert(select(2, log:gsub("\n", "")) == 4 and log:find("calls\t3", 1, true), log)
local uncaught = run("uncaught")
assert(uncaught:find(at(THROWS, "gave up at last\n"), 1, true) and uncaught:find("'?giveUp'?"), uncaught)
-- What is no std::exception has no text, and ends an interpreter that is built as C.
local number = run("number")
assert(number:find("caught\t0\n", 1, true) or number:find("terminate called", 1, true), number)
