-- The dialogue on a terminal, which `script` plays.
local shell = require("tests.shell")

local function dialogue(input)
  local state = shell.folder()
  local run = shell.run(("XDG_STATE_HOME=%s TERM=xterm script -qec %s /dev/null"):format(state, shell.program), input)
  local history = io.open(state .. "/kel/history")
  run.history = history and history:read("*a") or ""
  if history then history:close() end
  return run
end

if shell.run("script -qec true /dev/null").status ~= 0 then
  it("needs a pseudo terminal", function() pending("which this machine does not give") end)
  return
end

describe("kel on a terminal", function()
  it("prints values, goes on after errors and ends with its input", function()
    local run = dialogue("6 * 7\nerror('broken')\nfor i = 1, 2 do\nprint('round', i)\nend\n")
    assert.equal(0, run.status, run.out)
    assert.truthy(run.out:find("\n42\r\n", 1, true), run.out)
    assert.truthy(run.out:find("\nstdin:1: broken\r\nstack traceback:", 1, true), run.out)
    assert.truthy(run.out:find("\nround\t2\r\n", 1, true) or run.out:find("\nround +2\r\n"), run.out)
  end)

  it("completes a name", function()
    local run = dialogue("tostring(kel.RigidB\t == kel.RigidBody)\n")
    assert.truthy(run.out:find('"true"', 1, true), run.out)
  end)

  it("keeps its history", function()
    assert.truthy(dialogue("6 * 7\n\nx = 1\n").history:find("6.-7\nx"))
  end)
end)
