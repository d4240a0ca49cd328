-- The program itself: what it prints, where, and with which exit status.
local shell = require("tests.shell")
local kel, script = shell.kel, shell.script

describe("kel", function()
  it("runs a script with its arguments in arg", function()
    local path = script("print(arg[0], #arg, arg[1], arg[2], ...)")
    local run = kel(path .. " one --two")
    assert.equal(0, run.status)
    assert.equal(path .. "\t2\tone\t--two\tone\t--two\n", run.out)
    assert.equal("", run.err)
  end)

  it("runs a chunk and standard input", function()
    assert.equal("3\n", kel("-e 'print(1 + 2)'").out)
    assert.equal("x\n", kel("-e 'print(arg[1])' x").out)
    assert.equal("4\n", kel("-", "print(2 + 2)").out)
    assert.equal("5\n", kel("", "print(2 + 3)").out)
  end)

  it("says who it is and how it is used", function()
    local version = kel("--version")
    assert.equal(0, version.status)
    assert.truthy(version.out:find("2.18.0.0", 1, true))
    local help = kel("--help")
    assert.equal(0, help.status)
    for _, option in ipairs({ "-e", "--check", "--log-level", "--no-plugin", "--traceback" }) do
      assert.truthy(help.out:find(option, 1, true), option)
    end
  end)

  it("refuses bad usage with status 2", function()
    for _, words in ipairs({ "--nonsense x.lua", "--log-level loud x.lua", "-e", "--check", "--check -e 1" }) do
      local run = kel(words)
      assert.equal(2, run.status, words)
      assert.equal("", run.out)
      assert.truthy(run.err ~= "")
    end
  end)

  it("logs the plug-in's build line only at level info", function()
    assert.equal("", kel("-e ''").err)
    local line = kel("--log-level info -e ''").err
    assert.truthy(line:match("^LuaPluginKel::LuaPluginKel%(%): %a%a%a [%d ]%d %d%d%d%d %d%d:%d%d:%d%d\n$"), line)
  end)

  it("leaves the tree out when asked to", function()
    assert.equal("nil\n", kel("--no-plugin -e 'print(kel)'").out)
    assert.equal("table\n", kel("-e 'print(type(kel))'").out)
  end)

  it("survives the end of a state that holds a simulation and its listener", function()
    local run = kel("-e 'sim = kelSDK.Simulation() l = kelSDK.LuaStepEventListener() sim:add(l) l.sim = sim'")
    assert.equal(0, run.status)
    assert.equal("", run.err)
  end)
end)

-- Addresses differ from one process to the next, and so does what lay in memory before.
describe("a simulation", function()
  it("ends with the same bits in every process, with sleep and threads or without", function()
    local path = script([[
      local sim = kelSDK.Simulation()
      kel.setNumThreads(tonumber(arg[1]))
      for _ = 1, tonumber(arg[2]) do unused = kel.RigidBody(kelCollide.Geometry(kelCollide.Sphere(1))) end
      sim:add(kelCollide.Geometry(kelCollide.Plane()))
      local bodies = {}
      for i = 0, 59 do
        local shape = i % 3 == 0 and kelCollide.Sphere(0.25) or i % 3 == 1 and kelCollide.Box(0.25, 0.25, 0.25)
          or kelCollide.Capsule(0.2, 0.3)
        local body = kel.RigidBody(kelCollide.Geometry(shape))
        body:setPosition(0.3 * (i % 4) + 0.01 * (i % 7), 0.4 * (math.floor(i / 4) % 3), 0.4 + 0.3 * math.floor(i / 4))
        sim:add(body)
        bodies[i + 1] = body
      end
      kel.AutoSleep(bodies[1]:getSystem()):setEnable(true)
      for _ = 1, 150 do sim:stepForward() end
      for _, body in ipairs(bodies) do
        local p, r = body:getPosition(), body:getRotation()
        print(("%.17g %.17g %.17g %.17g %.17g"):format(p:x(), p:y(), p:z(), r:x(), r:w()))
      end]])
    local first = kel(path .. " 1 0")
    assert.equal("", first.err)
    assert.equal(60, select(2, first.out:gsub("\n", "")))
    for _, words in ipairs({ " 1 0", " 1 1000", " 2 17" }) do assert.equal(first.out, kel(path .. words).out) end
  end)
end)

describe("a script that fails", function()
  local function fails(text, pattern)
    local run = kel(script(text))
    assert.equal(1, run.status)
    assert.truthy(run.err:match(pattern), run.err)
    return run.err
  end

  it("that is missing is named", function()
    local run = kel("nowhere/missing.lua")
    assert.equal(1, run.status)
    assert.truthy(run.err:find("nowhere/missing.lua", 1, true), run.err)
    assert.truthy(run.err:find("No such file", 1, true), run.err)
  end)

  it("shows file, line and traceback", function()
    fails("local x = = 1", "%.lua:1: unexpected symbol")
    local text = fails("local function inner() error('broken') end\nlocal function outer()\n  inner()\nend\nouter()",
                       "%.lua:1: broken\nstack traceback:")
    assert.truthy(text:match("%.lua:3: in function 'outer'") or text:match("%.lua:3:"), text)
    fails("error({})", "error object is a table value")
    fails("error(setmetatable({}, {__tostring = function() return 'readable' end}))", "readable")
  end)

  it("names the function and the argument of a bad call", function()
    fails("\nkel.Vec3(1, 2, 3):length(4)", "%.lua:2: error in function 'length'%.")
    fails("kel.Vec3.length(nil)", "%.lua:1: invalid 'self' in function 'length'")
    fails("kelSDK.Simulation():add('box')", "%.lua:1: error in function 'add'%.")
  end)

  it("may close its state", function()
    -- Only LuaJIT knows the second argument.
    local run = shell.run(("%s -e 'body = kel.RigidBody() os.exit(3, true)'"):format(shell.program))
    assert.equal(3, run.status, run.err)
  end)

  it("is stopped by Ctrl-C, whatever it catches and wherever it runs", function()
    for _, endless in ipairs({
      "while true do pcall(print) end",
      "local function loop() while true do end end coroutine.wrap(function() while true do pcall(loop) end end)()",
      "local c = coroutine.create(function() coroutine.wrap(function() while true do end end)() end)\n" ..
        "coroutine.resume(c) while true do end",
    }) do
      -- A loop that LuaJIT has compiled looks for nothing.
      local path = script("if jit then jit.off() end " .. endless)
      local run = shell.run(("timeout --foreground -k 5 --preserve-status -s INT 3 %s %s"):format(shell.program, path))
      assert.equal(130, run.status, endless)
      assert.truthy(run.err:find("interrupted", 1, true), run.err)
    end
    fails("coroutine.create(print)", "bad argument #1 to 'create' %(Lua function expected%)")
  end)

  it("may have an error value that fails itself", function()
    fails("error(setmetatable({}, {__tostring = function() error('inner') end}))", "error object is a table value")
  end)
end)

describe("plug-in files", function()
  it("that are absent or broken end in one message", function()
    local folder = shell.folder()
    shell.run(("mkdir -p %s/bin %s/lib && cp %s %s/bin/ && cp -P %s/libkel[A-Z]*.so* %s/lib/ && rm %s/lib/*_luaplugin*"):format(
      folder, folder, shell.program, folder, shell.libraries, folder, folder))
    local function moved(prepare)
      shell.run(prepare)
      return shell.run(("LD_LIBRARY_PATH=%s/lib %s/bin/%s -e 'print(1)'"):format(folder, folder, shell.name))
    end
    local absent = moved(":")
    assert.equal(1, absent.status)
    assert.truthy(absent.err:find("libkel_luaplugin.so is not in " .. folder .. "/lib; KEL_PLUGIN_PATH", 1, true), absent.err)

    local broken = moved(("echo rubbish > %s/lib/libkel_luaplugin.so"):format(folder))
    assert.equal(1, broken.status)
    assert.truthy(broken.err:match("^kel: cannot load the plug%-in 'kel': [^\n]+\n$"), broken.err)

    local alone = moved(("cp %s/libkel_luaplugin.so %s/lib/"):format(shell.libraries, folder))
    assert.equal(0, alone.status)
    assert.equal("error: Error loading plugin: kelEntities\n", alone.err)
    assert.equal("1\n", alone.out)
  end)
end)
