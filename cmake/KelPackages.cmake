# The binding generator: packages (declarations of the scripts' API) become C++ sources, stubs and reference.
set(KEL_GENERATOR_DIR ${PROJECT_SOURCE_DIR}/LuaPlugins/plugins/kel/generator)
find_program(LUA_PROGRAM NAMES lua5.1 lua REQUIRED)

# kel_generate_packages(<prefix> <folder> <package files>...): writes into <folder>; sets <prefix>_SOURCES and
# <prefix>_MODELS in the caller. Included files lie beside the packages, in shared/.
function(kel_generate_packages prefix folder)
  file(GLOB generator CONFIGURE_DEPENDS ${KEL_GENERATOR_DIR}/*.lua)
  file(MAKE_DIRECTORY ${folder})
  foreach(package ${ARGN})
    get_filename_component(name ${package} NAME_WE)
    get_filename_component(directory ${package} DIRECTORY)
    file(GLOB shared CONFIGURE_DEPENDS ${directory}/shared/*.inc ${directory}/opaque_types.txt)
    set(source ${folder}/generated_${name}.cpp)
    set(model ${folder}/${name}.model.lua)
    add_custom_command(
      OUTPUT ${source} ${model}
      BYPRODUCTS ${folder}/${name}.lua ${folder}/${name}.md
      COMMAND ${TOLUA_PROGRAM} -L ${KEL_GENERATOR_DIR}/kel.lua -E generator=${KEL_GENERATOR_DIR} -E out=${folder}
              ${name}.pkg
      DEPENDS ${package} ${shared} ${generator}
      WORKING_DIRECTORY ${directory}
      COMMENT "Generating ${name}"
      VERBATIM)
    list(APPEND sources ${source})
    list(APPEND models ${model})
  endforeach()
  set(${prefix}_SOURCES ${sources} PARENT_SCOPE)
  set(${prefix}_MODELS ${models} PARENT_SCOPE)
endfunction()

# kel_package_objects(<target> <sources>...): generated sources as an object library, with a precompiled header.
function(kel_package_objects target)
  add_library(${target} OBJECT ${ARGN})
  kel_warnings(${target})
  target_precompile_headers(${target} PRIVATE <kelLua/Wrap.h>)
  if(CCACHE)
    target_compile_options(${target} PRIVATE -fpch-preprocess)
    set_target_properties(${target} PROPERTIES
      CXX_COMPILER_LAUNCHER "env;CCACHE_SLOPPINESS=pch_defines,time_macros;${CCACHE}")
  endif()
endfunction()
