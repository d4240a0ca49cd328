# `cmake --install`: the program, the libraries with their headers, and what tells other builds where they are.
include(CMakePackageConfigHelpers)

set(config_dir ${CMAKE_INSTALL_LIBDIR}/cmake/kel)
install(TARGETS kel kel-jit RUNTIME)
install(TARGETS kelCore kelPhysics kelLua LuaHeaders EXPORT kelTargets)
install(TARGETS kel_module LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/lua/5.1)
install(TARGETS kel_luaplugin kelEntities_luaplugin LIBRARY)
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kel)
install(DIRECTORY examples docs DESTINATION ${CMAKE_INSTALL_DATADIR}/kel)
install(DIRECTORY ${CMAKE_BINARY_DIR}/LuaPlugins/plugins/kel/generated/
        DESTINATION ${CMAKE_INSTALL_DATADIR}/kel/api FILES_MATCHING PATTERN "*.md" PATTERN "*.lua" PATTERN "*.model.lua" EXCLUDE)

install(EXPORT kelTargets NAMESPACE kel:: DESTINATION ${config_dir})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/kelConfigVersion.cmake COMPATIBILITY SameMinorVersion)
configure_package_config_file(cmake/kelConfig.cmake.in ${CMAKE_BINARY_DIR}/kelConfig.cmake INSTALL_DESTINATION ${config_dir})
install(FILES ${CMAKE_BINARY_DIR}/kelConfig.cmake ${CMAKE_BINARY_DIR}/kelConfigVersion.cmake DESTINATION ${config_dir})

configure_file(cmake/kel.pc.in ${CMAKE_BINARY_DIR}/kel.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/kel.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
