-- kel --check: findings on scripts that are not run.
local shell = require("tests.shell")
local script = shell.script

local function check(paths, environment)
  return shell.run(("%s %s --check %s"):format(environment or "", shell.program, paths))
end

describe("kel --check", function()
  it("finds nothing in the examples and runs nothing", function()
    local run = check("examples/*.lua " .. script("print('ran') os.exit(5)"))
    assert.equal("", run.out .. run.err)
    assert.equal(0, run.status)
  end)

  it("finds errors of syntax in each file, also behind a long path", function()
    local folder = shell.folder() .. "/" .. ("long"):rep(30)
    shell.run(("mkdir -p %s && printf '#!/bin/kel\\nx =\\n= 1' > %s/a.lua"):format(folder, folder))
    local second = script("for")
    local run = check(folder .. "/a.lua " .. second)
    assert.equal(1, run.status)
    local first, last = run.out:match("^([^\n]+)\n([^\n]+)\n$")
    assert.equal(folder .. "/a.lua:3:1: unexpected symbol near '='", first)
    assert.equal(second .. ":1:1: ", last:sub(1, #second + 6))
  end)

  it("finds names that do not exist", function()
    local path = script([[
local box = kelCollide.Box(1, 1, 1)
print(kelCollide.Box.BOX, kelCollide.Box.BOXX, kel.Vec3.new, kel.Vec9)
print(kelNothing, string.fromat, arg[1], string.format, box.anything)]])
    local run = check(path)
    assert.equal(1, run.status)
    local expected = {
      "2:27: accessing undefined field 'Box.BOXX' of global 'kelCollide'",
      "2:62: accessing undefined field 'Vec9' of global 'kel'",
      "3:7: accessing undefined variable 'kelNothing'",
      "3:19: accessing undefined field 'fromat' of global 'string'",
    }
    for i, line in ipairs(expected) do expected[i] = path .. ":" .. line .. "\n" end
    assert.equal(table.concat(expected), run.out)
  end)

  it("lets files use what they made", function()
    local path = script("function kel.Vec3:mine() end kel.own = {} helper = 1\nprint(kel.Vec3.mine, kel.own.x, helper, kel.owner)")
    local run = check(path)
    assert.truthy(run.out:match("^[^\n]+:2:%d+: accessing undefined field 'owner' of global 'kel'\n$"), run.out)
  end)

  it("says what it could not read or check", function()
    local missing = check("nowhere/missing.lua")
    assert.equal(1, missing.status)
    assert.equal("kel: cannot open nowhere/missing.lua: No such file or directory\n", missing.err)
    local alone = check(script("print(kelNothing)"), "PATH=/nowhere")
    assert.equal(0, alone.status)
    assert.truthy(alone.err:find("names were not checked", 1, true), alone.err)
  end)
end)
