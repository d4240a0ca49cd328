-- Random calls of everything that scripts can call, to see that no script brings the process down:
--
--   kel tests/torture/torture.lua [--seed N] [--calls K | --seconds S] [--log FILE] [--verbose] [--only-last M]
--
-- The same seed gives the same calls, as far as finalisers act at the same moments: in `kel` exactly, when it runs
-- without address randomisation (`setarch -R kel ...`). --log FILE keeps the last calls in a file. After a crash at
-- call K, `--seed N --calls K --only-last M` shows the last M calls on standard error before each is made.
package.path = arg[0]:gsub("[^/]*$", "?.lua;") .. package.path
local log = require "log"

local options = { seed = 1, calls = 1 / 0, seconds = 1 / 0, ["only-last"] = 1 / 0 }
local i = 1
while arg[i] do
  local name = arg[i]:match("^%-%-(.*)")
  if name == "verbose" then
    options.verbose = true
  elseif name == "log" then
    options.log = arg[i + 1]
    i = i + 1
  else
    assert(options[name], "bad option " .. arg[i])
    options[name] = assert(tonumber(arg[i + 1]), arg[i] .. " needs a number")
    i = i + 1
  end
  i = i + 1
end
if options.calls == 1 / 0 and options.seconds == 1 / 0 then options.seconds = 10 end

log.open {
  file = options.log,
  verbose = options.verbose or options["only-last"] < 1 / 0,
  from = options["only-last"] < 1 / 0 and options.calls - options["only-last"] + 1 or 1,
}

local surface = require "surface"
local random = require("generator").new(options.seed)
local actions = require("actions").new(random)
local pool = require("values").new(random, function() return actions:callback() end)
local calls = require("calls").new(random, pool)
actions:bind(pool, calls)

local CALLS_PER_WORLD = 3000
local finish = os.time() + options.seconds
local nextWorld = 0
while log.count < options.calls and os.time() < finish do
  if log.count >= nextWorld then
    actions:reset()
    nextWorld = log.count + CALLS_PER_WORLD
  end
  actions:any()
end
actions:reset()

local wrappers, succeeded, never = 0, 0, {}
for _, f in ipairs(surface.functions) do
  if not f.event then
    wrappers = wrappers + 1
    if calls.succeeded[f.name] then succeeded = succeeded + 1 else never[#never + 1] = f.name end
  end
end
print(("seed %d: %d calls; %d of %d functions were called with success"):format(options.seed, log.count, succeeded,
  wrappers))
if options.verbose then print("never: " .. table.concat(never, " ")) end
local failed = false
for text in pairs(calls.strange) do
  io.stderr:write("unexpected failure: ", text, "\n")
  failed = true
end
if failed then os.exit(1) end
