-- Runs programs for the specs and keeps their output apart.
local shell = { program = assert(os.getenv("KEL")), libraries = assert(os.getenv("KEL_LIB")) }

shell.name = shell.program:match("[^/]+$")

local function read(path)
  local file = assert(io.open(path, "rb"))
  local text = file:read("*a")
  file:close()
  os.remove(path)
  return text
end

--- Runs a shell command; returns its status, standard output and standard error.
function shell.run(command, input)
  local out, err, inp = os.tmpname(), os.tmpname(), os.tmpname()
  local file = assert(io.open(inp, "wb"))
  file:write(input or "")
  file:close()
  local status = os.execute(("{ %s; } >%s 2>%s <%s"):format(command, out, err, inp))
  os.remove(inp)
  return { status = math.floor(status / 256), out = read(out), err = read(err) }
end

--- Runs the host with these words.
function shell.kel(words, input) return shell.run(shell.program .. " " .. words, input) end

local made = {}

--- Writes a script file and returns its path; it goes at the end of the process.
function shell.script(text)
  local path = os.tmpname() .. ".lua"
  made[#made + 1] = path
  local file = assert(io.open(path, "w"))
  file:write(text)
  file:close()
  return path
end

--- A new empty folder.
function shell.folder()
  local path = os.tmpname()
  os.remove(path)
  assert(os.execute("mkdir -p " .. path) == 0)
  return path
end

return shell
