-- The bench runs, and gives three times for each of its rows: lua rows_test.lua PROGRAM.
local program = "'" .. arg[1] .. "'"

local function lines(options)
  local result = {}
  local output = assert(io.popen(program .. options))
  for line in output:lines() do result[#result + 1] = line end
  output:close()
  return result
end

local names, table = lines " --list", lines " --csv --passes 1 --ops 200"
assert(#names > 0 and #table == #names + 1, "the table has " .. #table - 1 .. " rows of " .. #names)
for i, name in ipairs(names) do
  local row = table[i + 1]
  local quoted = '"' .. string.gsub(name, '"', '""') .. '",'
  assert(string.sub(row, 1, #quoted) == quoted, row .. "\nis not the row of " .. name)
  assert(string.find(row, "^%-?[%d.]+,%-?[%d.]+,%-?[%d.]+,", #quoted + 1), row .. "\nlacks a time")
end
