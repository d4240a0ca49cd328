-- Compares what the generator writes for a test package with the files kept in golden/:
--   lua golden.lua GENERATED GOLDEN [--refresh]
-- --refresh replaces the kept files after an intended change.
local generated, golden, refresh = arg[1], arg[2], arg[3] == "--refresh"
local FILES = {"generated_test_Golden.cpp", "test_Golden.lua", "test_Golden.md"}

local function read(path)
  local file = io.open(path)
  if not file then return nil end
  local text = file:read("*a")
  file:close()
  return text
end

local function firstDifference(actual, expected)
  local line = 0
  local wanted = string.gmatch(expected.."\n", "([^\n]*)\n")
  for text in string.gmatch(actual.."\n", "([^\n]*)\n") do
    line = line + 1
    local kept = wanted()
    if text ~= kept then return line, text, kept end
  end
  return line + 1, nil, wanted()
end

local faults = 0
for _, name in ipairs(FILES) do
  local actual, expected = assert(read(generated.."/"..name)), read(golden.."/"..name)
  if refresh then
    local file = assert(io.open(golden.."/"..name, "w"))
    file:write(actual)
    file:close()
  elseif actual ~= expected then
    faults = faults + 1
    local line, text, kept = firstDifference(actual, expected or "")
    print(name..":"..line..":\n  written: "..tostring(text).."\n  golden:  "..tostring(kept))
  end
end

-- Of the model itself what none of the files shows: the names that are compared across packages.
local model = dofile(generated.."/test_Golden.model.lua")
local names = table.concat(model.types, " ").."; "..table.concat(model.enums, " ")
local wanted = "kel::Referenced test::Body test::Holder test::Pair test::Streamed test::Unused test::Vector; "
  .."test::Vector::Axis"
if names ~= wanted then
  faults = faults + 1
  print("the model names "..names.."\n  in place of "..wanted)
end
os.exit(faults == 0 and 0 or 1)
