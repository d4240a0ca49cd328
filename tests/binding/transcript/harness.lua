-- What the blocks of the transcript print with.
local harness = {collecting = false}

local function show(value)
  if type(value) == "userdata" then return "<"..tolua.type(value)..">" end
  if type(value) == "number" then return value ~= value and "nan" or string.format("%.17g", value) end
  if type(value) == "table" or type(value) == "function" or type(value) == "thread" then return type(value) end
  return tostring(value)
end

-- the text without the script's position in front and what our reports add behind
local function contract(message)
  if type(message) ~= "string" then return show(message) end
  message = string.gsub(message, "^.-:%d+: ", "")
  message = string.gsub(string.gsub(message, "\n     given:.*", ""), "\n     signatures:.*", "")
  return (string.gsub(string.gsub(message, "%s+$", ""), "%s+", " "))
end

function harness.try(label, f, ...)
  if harness.collecting then collectgarbage() end
  local results = {pcall(f, ...)}
  local texts = {}
  for i = 2, table.maxn(results) do texts[i - 1] = results[1] and show(results[i]) or contract(results[i]) end
  print(label..": "..(results[1] and "" or "error ")..table.concat(texts, " | "))
end

function harness.settle() for _ = 1, 3 do collectgarbage() end end

-- How a block runs chunks: `names` are the locals that they see, which `values` makes anew for each chunk. Gives
-- `run(label, code)`, for everything that is not one call, and `eval(expressions)`.
function harness.with(names, values)
  local function run(label, code)
    -- an object that the engine owns for good keeps the type of its last handle until that is collected
    if string.find(code, "hidden") or string.find(code, "shared") then harness.settle() end
    local chunk = assert(loadstring("local "..names.." = ... "..code, "=chunk"))
    harness.try(label, chunk, values())
  end
  local function eval(expressions)
    for _, expression in ipairs(expressions) do run(expression, "return "..expression) end
  end
  return run, eval
end

-- How many objects of each kind a chunk leaves behind.
function harness.count(label, code)
  harness.settle()
  local function living()
    return {test.bodies(), test.holders(), test.countOpaque(), test.devices(), test.texts()}
  end
  local before = living()
  -- on a stack of its own, so that no dead local lies about on ours
  local ok, failure = pcall(coroutine.wrap(assert(loadstring(code, "=chunk"))))
  harness.settle()
  local after = living()
  for i, number in ipairs(before) do after[i] = after[i] - number end
  print(label..": "..table.concat(after, " ")..(ok and "" or " error "..contract(failure)))
end

return harness
