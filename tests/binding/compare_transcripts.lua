-- Runs the transcript with both programs: lua compare_transcripts.lua STOCK OURS FOLDER. Lines must be equal, except
-- those in transcript_differences.lua, which must differ.
local stock, ours, folder = arg[1], arg[2], arg[3]
local differences = dofile(folder.."/transcript_differences.lua")

local function lines(program)
  local pipe = assert(io.popen(program.." "..folder.."/transcript.lua 2>&1; echo status: $?"))
  local list = {}
  for line in pipe:lines() do list[#list + 1] = line end
  pipe:close()
  return list
end

local expected, actual = lines(stock), lines(ours)
local faults, used = 0, {}
for i = 1, math.max(#expected, #actual) do
  local label = string.match(expected[i] or "", "^(.-): ") or ""
  local differ = expected[i] ~= actual[i]
  if differences[label] then used[label] = used[label] or differ
  elseif differ then
    faults = faults + 1
    print("stock: "..tostring(expected[i]).."\nours:  "..tostring(actual[i]))
  end
end
for label in pairs(differences) do
  if not used[label] then
    faults = faults + 1
    print("no difference any more: "..label)
  end
end
print(#expected.." lines, "..faults.." unexpected")
os.exit(faults == 0 and expected[#expected] == "status: 0" and actual[#actual] == "status: 0" and 0 or 1)
