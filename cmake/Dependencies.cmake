# Everything that is not written here comes from these packages; `cmake/packages.txt` installs them.
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
pkg_check_modules(Lua REQUIRED IMPORTED_TARGET lua5.1-c++)
pkg_check_modules(LuaJit REQUIRED IMPORTED_TARGET luajit)
pkg_check_modules(Apr REQUIRED IMPORTED_TARGET apr-1)
pkg_check_modules(Edit REQUIRED IMPORTED_TARGET libedit)
pkg_check_modules(Uuid REQUIRED IMPORTED_TARGET uuid)
pkg_check_modules(Bullet REQUIRED IMPORTED_TARGET bullet-float64)
pkg_check_modules(MuParser REQUIRED IMPORTED_TARGET muparser)
find_package(Eigen3 REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(CLI11 REQUIRED)

# Lua headers without the library: our libraries take lua_* from the process, which has exactly one Lua.
add_library(LuaHeaders INTERFACE)
target_include_directories(LuaHeaders SYSTEM INTERFACE ${Lua_INCLUDE_DIRS})
list(JOIN Lua_CFLAGS " " LUA_CFLAGS)

find_library(TOLUA_LIBRARY tolua++5.1 REQUIRED)
find_program(TOLUA_PROGRAM tolua++5.1 REQUIRED)
find_program(LUAC_PROGRAM NAMES luac5.1 luac REQUIRED)

# Bullet's collision half only; its headers warn, so they are system headers.
add_library(BulletCollision INTERFACE)
target_include_directories(BulletCollision SYSTEM INTERFACE ${Bullet_INCLUDE_DIRS})
target_compile_definitions(BulletCollision INTERFACE BT_USE_DOUBLE_PRECISION)
find_library(BULLET_COLLISION BulletCollision-float64 REQUIRED)
find_library(BULLET_MATH LinearMath-float64 REQUIRED)
target_link_libraries(BulletCollision INTERFACE ${BULLET_COLLISION} ${BULLET_MATH})
