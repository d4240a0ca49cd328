---@meta test_Golden

test = test or {}

do
--- Every kind of member once; the files that it gives are kept and compared.
---@class const.test.Vector
---@operator add(const.test.Vector): test.Vector
---@operator unm: test.Vector
---@field [integer] number
---@field [".test::Pair"] fun(self: const.test.Vector): test.Pair
---@field x number # The first element.
local const = {}

--- The length.
---@return number
function const:length() end

---@class test.Vector: const.test.Vector
local plain = {}

--- Copies a vector, or sets one element.
---@overload fun(self: test.Vector, other: const.test.Vector)
---@param value number
---@param index? number # default 0
function plain:set(value, index) end

end
---@class test.Vector.table
---@overload fun(v: number[]): test.Vector
--- All elements alike, or a table of three.
---@overload fun(value: number): test.Vector
---@field X integer # 0
---@field Y integer # 1
---@field UP integer # 2
test.Vector = {}

--- All elements alike, or a table of three.
---@overload fun(self: test.Vector.table, value: number): test.Vector
---@param v number[]
---@return test.Vector
function test.Vector:new(v) end

--- All elements alike, or a table of three.
---@overload fun(self: test.Vector.table, value: number): test.Vector
---@param v number[]
---@return test.Vector
function test.Vector:new_local(v) end

--- The unit vector along an axis.
---@param i number
---@return test.Vector
function test.Vector:axis(i) end

do
--- A counted object with a second base.
---@class const.test.Body: const.kel.Referenced
---@field target test.Body? # What it follows.
---@field label string # Only read. (read only)
---@field __test__Streamed__ test.Streamed #  (read only)
local const = {}

--- The name, by another name.
---@return string
function const:Name() end

---@return const.test.Vector
function const:position() end

---@class test.Body: const.test.Body, kel.Referenced
local plain = {}

--- Moves; without a place, to 0.
---@param p? const.test.Vector # default test::Vector()
function plain:setPosition(p) end

end
---@class test.Body.table: kel.Referenced.table
--- A body, with a name that comes back.
---@overload fun(name: string?): test.Body
test.Body = {}

--- A body, with a name that comes back.
---@param name string?
---@return test.Body
---@return string name # the argument, after the call
function test.Body:new(name) end

--- A body, with a name that comes back.
---@param name string?
---@return test.Body
---@return string name # the argument, after the call
function test.Body:new_local(name) end

do
---@class const.test.Unused
local const = {}

---@class test.Unused: const.test.Unused
local plain = {}

end
---@class test.Unused.table
test.Unused = {}

do
--- Deleted by hand.
---@class const.test.Holder
local const = {}

---@class test.Holder: const.test.Holder
local plain = {}

function plain:delete() end

end
---@class test.Holder.table
test.Holder = {}

function test.Body:both( other ) end

