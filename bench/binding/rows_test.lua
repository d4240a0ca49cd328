-- The bench runs, and gives three times for each of its rows and what opening costs: lua rows_test.lua PROGRAM.
local program = "'" .. arg[1] .. "'"

local function lines(options)
  local result = {}
  local output = assert(io.popen(program .. options .. "; echo status $?"))
  for line in output:lines() do result[#result + 1] = line end
  output:close()
  assert(table.remove(result) == "status 0", options .. " failed")
  return result
end

local names, rows = lines " --list", lines " --csv --passes 1 --ops 200"
assert(#names > 0 and #rows == #names + 1, "the table has " .. #rows - 1 .. " rows of " .. #names)
for i, name in ipairs(names) do
  local row = rows[i + 1]
  local quoted = '"' .. string.gsub(name, '"', '""') .. '",'
  assert(string.sub(row, 1, #quoted) == quoted, row .. "\nis not the row of " .. name)
  assert(string.find(row, "^%-?[%d.]+,%-?[%d.]+,%-?[%d.]+,", #quoted + 1), row .. "\nlacks a time")
end

local whole = table.concat(lines " --passes 1 --ops 200", "\n")
for _, figure in ipairs {"new state with the tree: %d", "Lua memory: %d", "empty script: %d", "kel.Vec3: ours %d"} do
  assert(string.find(whole, figure), "no " .. figure .. " in\n" .. whole)
end
