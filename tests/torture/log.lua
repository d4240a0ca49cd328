-- The last calls of a process, each written before it is made, so that a crash can be read and made again.
local log = { count = 0 }

local KEPT, WIDTH = 64, 400
local options = {}

--- `file`: the last calls as lines of one width, in a ring. `verbose`: all calls to standard error, or only those
--- from call number `from` on.
function log.open(given)
  options = given
  if given.file then
    options.ring = assert(io.open(given.file, "w"))
    options.ring:setvbuf("no")
  end
end

--- Whether the next call is to be described.
function log.isWanted() return options.ring ~= nil or options.verbose and log.count + 1 >= options.from end

--- Counts a call and writes its text if it is wanted.
function log.call(text)
  log.count = log.count + 1
  if not text then return end
  local line = ("%9d %s"):format(log.count, text)
  if options.ring then
    options.ring:seek("set", (log.count - 1) % KEPT * WIDTH)
    options.ring:write(line:sub(1, WIDTH - 1), (" "):rep(WIDTH - 1 - #line), "\n")
  end
  if options.verbose and log.count >= options.from then io.stderr:write(line, "\n") end
end

return log
