-- Every example runs, and shows what it promises.
local shell = require("tests.shell")

local function example(words)
  local run = shell.kel("examples/" .. words)
  assert.equal(0, run.status, run.err)
  assert.equal("", run.err)
  return run.out
end

describe("the example", function()
  it("list is complete here", function()
    local listed = shell.run("ls examples/*.lua").out
    assert.equal("examples/01_falling_box.lua\nexamples/02_step_listener.lua\nexamples/03_vectors.lua\n"
                   .. "examples/04_many_boxes.lua\nexamples/05_rotations.lua\nexamples/06_materials.lua\n"
                   .. "examples/07_sleep.lua\n", listed)
  end)

  it("01: a box falls, bounces and rests", function()
    local rows = {}
    for time, height, speed in example("01_falling_box.lua"):gmatch("([%d.]+) +([%d.]+) +(%-?[%d.]+)\n") do
      rows[#rows + 1] = { time = tonumber(time), height = tonumber(height), speed = tonumber(speed) }
    end
    assert.equal(21, #rows)
    -- In the air the speed is g t, and the step's rule makes the fall g h t / 2 longer than the curve.
    for _, row in ipairs(rows) do
      if row.time < 0.7 then
        assert.near(-9.80665 * row.time, row.speed, 1e-3)
        assert.near(3 - 9.80665 / 2 * row.time * (row.time + 1 / 60), row.height, 1e-3)
      end
    end
    local bounced = false
    for i = 2, #rows do bounced = bounced or rows[i].speed > 1 and rows[i - 1].speed < -1 end
    assert.is_true(bounced)
    assert.near(0.5, rows[#rows].height, 1e-3)
    assert.near(0, rows[#rows].speed, 1e-3)
  end)

  it("02: a listener hears of each step", function()
    local out = example("02_step_listener.lua")
    assert.truthy(out:find("the simulation let the listener go", 1, true))
    assert.truthy(out:find("steps heard: 120", 1, true))
    assert.is_true(tonumber(out:match("drifted: ([%d.]+) m")) > 0.1)
  end)

  it("03: vectors compute", function()
    local out = example("03_vectors.lua")
    assert.truthy(out:find("dot product    \t32", 1, true), out)
    assert.truthy(out:find("Vec3(-3, 6, -3)", 1, true), out)
  end)

  it("04: many boxes fall into a heap", function()
    local out = example("04_many_boxes.lua 200 200")
    assert.truthy(out:match("200 bodies, 200 steps: [%d.]+ ms a step"), out)
    assert.is_true(tonumber(out:match("highest ([%d.]+) m")) < 1.5)
  end)

  it("05: rotations and frames follow each other", function()
    local out = example("05_rotations.lua")
    local both, inTurn = out:match("turned and tilted *\t([^\n]*)\nin two steps *\t([^\n]*)")
    assert.equal("-1.33225 -0.0645492 3.49585", both)
    assert.equal(both, inTurn)
    assert.truthy(out:find("and back *\tVec3%(1, 2, 3%)"), out)
    assert.truthy(out:find("the arm turned *\tVec3%(1, 0, 5%)"), out)
  end)

  it("06: materials say how far things slide", function()
    local rubber, ice = example("06_materials.lua"):match("rubber slid ([%d.]+) m, ice ([%d.]+) m")
    -- Half the square of the speed by friction times gravity; the rubber's is the mean with the ground's.
    assert.near(8 / (math.sqrt(0.5) * 9.80665), tonumber(rubber), 0.06)
    assert.near(8 / (0.1 * 9.80665), tonumber(ice), 0.06)
  end)

  it("07: towers sleep, and the one that is hit wakes", function()
    local out = example("07_sleep.lua")
    assert.truthy(out:find("2.00 s: 5 of 5 asleep in tower 1, 5 of 5 asleep in tower 2", 1, true), out)
    assert.truthy(out:find("2.30 s: 0 of 5 asleep in tower 1, 5 of 5 asleep in tower 2", 1, true), out)
  end)
end)
