-- Runs the transcript with both programs: lua compare_transcripts.lua STOCK OURS FOLDER. Lines must be equal, except
-- where transcript_differences.lua says what ours are instead. Each of these differences must be there.
local stock, ours, folder = arg[1], arg[2], arg[3]
local differences = dofile(folder.."/transcript_differences.lua")
local used = {}

local function lines(program, mode)
  local pipe = assert(io.popen(program.." "..folder.."/transcript.lua "..folder.." "..mode.." 2>&1; echo status: $?"))
  local list = {}
  for line in pipe:lines() do list[#list + 1] = line end
  pipe:close()
  return list
end

local function replace(line, from, to)
  local first, last = string.find(line, from, 1, true)
  if not first then return line end
  return string.sub(line, 1, first - 1)..to..replace(string.sub(line, last + 1), from, to)
end

local function isKnown(expected, actual)
  local label, text = string.match(actual, "^(.-): (.*)$")
  local line = differences.lines[label]
  if line then
    used[line] = true
    return text == line[2]
  end
  for _, family in ipairs(differences.families) do
    if label and string.find(label, family[1]) then
      used[family] = true
      return string.find(text, family[3]) ~= nil
    end
  end
  for _, change in ipairs(differences.texts) do
    local changed = replace(expected, change[1], change[2])
    used[change] = used[change] or changed ~= expected
    expected = changed
  end
  return expected == actual
end

local expected = lines(stock, "raw")
local faults = 0
local function compare(mode)
  local actual, block = lines(ours, mode), ""
  for i = 1, math.max(#expected, #actual) do
    local line, other = expected[i] or "", actual[i] or ""
    if string.find(line, "^== ") then block = line.." ("..mode..")" end
    if line ~= other and not isKnown(line, other) then
      faults = faults + 1
      print(block.."\n  stock: "..line.."\n  ours:  "..other)
    end
  end
  return actual[#actual]
end

for _, status in ipairs {expected[#expected], compare("raw"), compare("plain")} do
  if status ~= "status: 0" then
    faults = faults + 1
    print("a program ended with "..status)
  end
end
for _, kind in pairs(differences) do
  for label, difference in pairs(kind) do
    if not used[difference] then
      faults = faults + 1
      print("no difference any more: "..(type(label) == "string" and label or difference[1]))
    end
  end
end
print(#expected.." lines, "..faults.." unexpected")
os.exit(faults == 0 and 0 or 1)
