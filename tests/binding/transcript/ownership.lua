-- How many objects chunks leave behind: bodies, holders, opaque values, devices, texts.
local harness = ...
local count = harness.count

count("called and dropped", "test.Body() test.Holder() test.Device() test.Servo() test.Text('x')")
count("new_local dropped",
  "test.Body:new_local() test.Holder:new_local() test.Servo:new_local() test.Text:new_local('x')")
count("new dropped", "test.Body:new() test.Holder:new() test.Servo:new() test.Text:new('x')")
count("new and deleted", "test.Holder:new():delete()")
count("kept", "test.keep(test.Body())")
count("let go", "test.keep(nil)")
count("held by hand", "test.Body():reference()")
count("cloned", "test.Body():clone()")
count("referenced and given back", "local d = test.Device() d:reference() d:unreference()")
count("new, referenced and given back", "local d = test.Device:new() d:reference() d:unreference()")
count("wrong constructors",
  "pcall(test.Body, 1, 2, 3) pcall(test.Holder, {}) pcall(test.Text, {}) pcall(test.Device, 1)")

-- by value
count("opaque", "for i = 1, 50 do test.makeOpaque(i) end")
count("texts", "for i = 1, 50 do test.makeText('x') end")
count("texts of operators",
  "local t = test.Text('x') for i = 1, 50 do t = t + t:copy() if i % 5 == 0 then t = test.Text('x') end end")
count("texts by reference", "local t = test.Text('x') for i = 1, 50 do t = t:append('y') end")
count("texts in a table",
  "local list = {} for i = 1, 50 do list[i] = test.makeText('x') end for i = 1, 25 do list[i] = nil end "..
  "collectgarbage()")
count("parts", "local d = test.Device() for i = 1, 20 do d.note:append('x') end d.note = test.Text('y')")
count("parts alone", "local n = test.Device().note")
count("cast texts", "tolua.cast(test.Text('x'), 'test::Text')")
count("cast devices", "tolua.cast(test.Servo(), 'test::Device')")
count("const texts", "local t = test.Text('x'):copy() local c = tolua.cast(t, 'const test::Text')")
count("collected under a coroutine",
  "local f = coroutine.wrap(function() local t = test.makeText('x') coroutine.yield(t) return t end) f() f()")
count("coroutine left",
  "coroutine.wrap(function() local t, d = test.makeText('x'), test.Device() coroutine.yield(t) end)()")
count("failed calls",
  "for i = 1, 20 do pcall(test.makeText) pcall(test.makeText, {}) local t = test.Text('x') pcall(t.append, t, {}) end")
count("cycle through peers", "local a, b = test.Device(), test.Device() a.peer, b.peer = b, a")
count("cycle through itself", "local a = test.Device() a.me = a local t = test.Text('x') t.me = t")
count("own fields", "local a = test.Device() a.list = {test.Text('x'), test.Device()}")
count("shared peers", "local peer = {test.Text('x')} for i = 1, 3 do tolua.setpeer(test.Device(), peer) end")

-- takeownership and releaseownership
count("taken", "tolua.takeownership(test.Holder:new())")
count("taken twice", "local h = test.Holder:new() tolua.takeownership(h) tolua.takeownership(h)")
count("taken and released", "local h = test.Holder:new() tolua.takeownership(h) tolua.releaseownership(h)")
count("taken, released and taken",
  "local h = test.Holder:new() tolua.takeownership(h) tolua.releaseownership(h) tolua.takeownership(h)")
count("released", "tolua.releaseownership(test.Holder())")
count("released and taken", "local h = test.Holder() tolua.releaseownership(h) tolua.takeownership(h)")
count("released and deleted", "local h = test.Holder() tolua.releaseownership(h) h:delete()")
count("texts taken", "tolua.takeownership(test.Text:new('x')) tolua.takeownership(test.Text('x'))")
count("texts released", "tolua.releaseownership(test.Text('x')) tolua.releaseownership(test.makeText('x'))")
count("texts released and taken", "local t = test.makeText('x') tolua.releaseownership(t) tolua.takeownership(t)")
count("counted taken", "local d = test.Device:new() d:reference() tolua.takeownership(d)")
count("counted taken without a reference", "tolua.takeownership(test.Device:new())")
count("counted released", "tolua.releaseownership(test.Device())")
count("counted released and given back", "local d = test.Device() tolua.releaseownership(d) d:unreference()")
count("counted taken by its base",
  "local d = test.Servo:new() d:reference() tolua.takeownership(tolua.cast(d, 'test::Device'))")
count("opaque released and taken", "local o = test.makeOpaque(1) tolua.releaseownership(o) tolua.takeownership(o)")
count("values", "for i = 1, 50 do local p = test.Point(1, 2) tolua.takeownership(p) local v = test.Vector(1) * 2 end")

-- finalisers run once, also when the engine shows an object again
count("shown again",
  "test.keep(test.Body()) local b = test.keptBody() b = nil collectgarbage() b = test.keptBody() test.keep(nil)")
count("shown again after its handle went",
  "test.keep(test.Body()) collectgarbage() collectgarbage() local b = test.keptBody() b = nil collectgarbage() "..
  "test.keep(nil)")
count("shown by its base", "local s = test.Servo() test.keep(s) s = nil collectgarbage() test.keep(nil)")
count("many", "local list = {} for i = 1, 300 do list[i % 7] = i % 2 == 0 and test.Servo() or test.Text('x') end")
count("many kept", "for i = 1, 100 do test.keep(test.Body()) end test.keep(nil)")
count("fields of dropped objects",
  "for i = 1, 50 do local d = test.Device() d.text = test.makeText('x') d.again = d end")
