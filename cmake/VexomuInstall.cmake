# The installed tree: libraries, headers, and what find_package(VEXomu) and pkg-config read.

include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/VEXomu")
set(pkgconfig_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

install(TARGETS VEXCRT VEXthr VEXutl VEXomu EXPORT VEXomuTargets)
install(DIRECTORY platform/include/ source/include/ DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/vexomu"
    FILES_MATCHING PATTERN "*.h")
install(EXPORT VEXomuTargets NAMESPACE VEXomu:: DESTINATION "${package_dir}")

configure_package_config_file(cmake/VEXomuConfig.cmake.in "${PROJECT_BINARY_DIR}/VEXomuConfig.cmake"
    INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/VEXomuConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/VEXomuConfig.cmake" "${PROJECT_BINARY_DIR}/VEXomuConfigVersion.cmake"
    DESTINATION "${package_dir}")

# The prefix is found from the file's own place, so that an installed tree may be moved.
file(RELATIVE_PATH pkgconfig_to_prefix "/${pkgconfig_dir}" "/")
set(pkgconfig_cflags "")
if(VEXOMU_COUNT_CLONES)
    set(pkgconfig_cflags " -DVEXUTL_COUNT_CLONES")
endif()
configure_file(cmake/vexomu.pc.in "${PROJECT_BINARY_DIR}/vexomu.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/vexomu.pc" DESTINATION "${pkgconfig_dir}")
