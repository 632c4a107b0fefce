# The shared library, its headers, a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

get_property(public_headers GLOBAL PROPERTY TVL_PUBLIC_HEADERS)

install(TARGETS TvlProject EXPORT TvlProjectTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/TvlProject)
install(FILES ${public_headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/TvlProject)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/TvlProject)
install(EXPORT TvlProjectTargets NAMESPACE TvlProject:: DESTINATION ${package_dir})
configure_package_config_file(cmake/TvlProjectConfig.cmake.in
    "${PROJECT_BINARY_DIR}/TvlProjectConfig.cmake" INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file("${PROJECT_BINARY_DIR}/TvlProjectConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/TvlProjectConfig.cmake"
    "${PROJECT_BINARY_DIR}/TvlProjectConfigVersion.cmake"
    DESTINATION ${package_dir})

# The file finds its prefix from where it lies, so that an installed tree can be moved.
file(RELATIVE_PATH TVL_PC_PREFIX "/p/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/p")
configure_file(cmake/TvlProject.pc.in "${PROJECT_BINARY_DIR}/TvlProject.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/TvlProject.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
