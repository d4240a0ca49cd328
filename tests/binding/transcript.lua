-- Prints what calls on the test packages give, one line a call: the same for tolua++'s own wrappers and for ours.
--   transcript.lua FOLDER MODE
-- MODE says how scripts add to class tables: "raw", or "plain", which tolua++ cannot do where a class has a base.
local folder, mode = ...
io.stdout:setvbuf("line")
local harness = dofile(folder.."/transcript/harness.lua")
local put = mode == "raw" and rawset or function(class, key, value) class[key] = value end

local BLOCKS = {"calls", "numbers", "variables", "classes", "peers", "operators", "functions", "results", "overloads",
  "guards", "ownership"}
for _, name in ipairs(BLOCKS) do
  local block = assert(loadfile(folder.."/transcript/"..name..".lua"))
  print("== "..name..", cold")
  block(harness, put)
  print("== "..name..", warm")
  block(harness, put)
  print("== "..name..", in a coroutine, garbage collected before every line")
  harness.collecting = true
  assert(coroutine.resume(coroutine.create(block), harness, put))
  harness.collecting = false
end
