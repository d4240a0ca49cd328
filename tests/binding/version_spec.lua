describe("version functions", function()
  it("unpack what they packed, whatever the placeholders", function()
    local parts = {KEL_CONVERT_VERSION(KEL_GET_VERSION(), 0, 1, 2, 3)}
    assert.same({kelGetGenerationVersion(), kelGetMajorVersion(), kelGetMinorVersion(), kelGetPatchVersion()}, parts)
    assert.same({2, 18, 0, 0}, parts)
    assert.equal(KEL_GET_VERSION(), KEL_CALC_VERSION(258, 18, 256, 0)) -- parts are cut to 8 bits
    assert.is_true(KEL_CALC_VERSION(255, 255, 255, 255) > 0)
    assert.error_matches(function() KEL_CONVERT_VERSION(1, 0, 0, 0, "x") end,
      "error in function 'KEL_CONVERT_VERSION'%.")
  end)

  it("have texts, with the revision by default and the date in words by default", function()
    assert.equal("2.18.0.0", kelGetVersion(false))
    assert.equal(kelGetVersion(true), kelGetVersion())
    assert.equal(kelGetBuildDate(false), kelGetBuildDate())
    assert.matches("^%a%a%a [ %d]%d %d%d%d%d$", kelGetBuildDate())
    assert.matches("^%d%d%d%d%-%d%d%-%d%d$", kelGetBuildDate(true))
    assert.equal(kelGetBuildDate():match("%d+$"), kelGetBuildDate(true):match("^%d+"))
    assert.matches("^%d%d:%d%d:%d%d$", kelGetBuildTime())
    assert.equal("kel", kelGetLibraryName())
    assert.matches("%-ffp%-contract=off", kelGetCppBuildFlags())
    for _, text in ipairs {kelGetRevision, kelGetCompanyName, kelGetBuildType, kelGetCBuildFlags} do
      assert.is_string(text())
    end
  end)
end)

describe("build configuration", function()
  local names = {
    "USE_64BIT_ARCHITECTURE", "LANCE_USE_METIS", "USE_OPENGL_INSTANCING", "USE_MEMORY_DEBUGGER", "USE_PREFETCHING",
    "USE_SSE", "USE_REAL_FLOAT", "LANCE_USE_SSE3", "LANCE_USE_PADDING", "USE_LUA", "USE_TOLUA", "USE_TINYXML",
    "USE_OPENGL", "USE_OSG", "UNITTEST_ENABLED", "USE_KELSENSOR", "USE_PARTICLE_SYSTEM", "USE_OPENCL", "USE_DEBUG",
    "USE_COMPOSITE", "WINDOWS_PLATFORM",
  }

  it("numbers and names its features", function()
    for i, name in ipairs(names) do
      assert.equal(i - 1, kel[name])
      assert.equal(name, kel.getBuildConfigurationString(kel[name]))
      assert.is_boolean(kel.isBuiltWith(kel[name]))
    end
    assert.equal(#names, kel.NUM_BUILD_CONFIGURATIONS)
    assert.is_true(kel.isBuiltWith(kel.USE_LUA))
    assert.is_false(kel.isBuiltWith(-1))
    assert.is_false(kel.isBuiltWith(1e9))
    assert.equal("", kel.getBuildConfigurationString(kel.NUM_BUILD_CONFIGURATIONS))
  end)

  it("keeps the number of threads and the start tick", function()
    kel.setNumThreads(3)
    assert.equal(3, kel.getNumThreads())
    kel.setNumThreads(0)
    assert.is_true(kel.getNumThreads() >= 1)
    kel.setNumThreads(1)
    local before = kel.getStartTick()
    assert.is_true(before > 0)
    kel.resetStartTick()
    assert.is_true(kel.getStartTick() > before)
  end)
end)
