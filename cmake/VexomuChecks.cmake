# What the build refuses beside what the compiler refuses: includes that point up the layers, and headers that
# compile only after others.

file(GLOB_RECURSE checked CONFIGURE_DEPENDS
    "${PROJECT_SOURCE_DIR}/platform/*.h" "${PROJECT_SOURCE_DIR}/platform/*.cpp"
    "${PROJECT_SOURCE_DIR}/source/*.h" "${PROJECT_SOURCE_DIR}/source/*.cpp"
    "${PROJECT_SOURCE_DIR}/engines/*.h" "${PROJECT_SOURCE_DIR}/engines/*.cpp")
set(script "${PROJECT_SOURCE_DIR}/cmake/check_layers.py")
set(stamp "${PROJECT_BINARY_DIR}/layers.checked")
add_custom_command(OUTPUT "${stamp}"
    COMMAND "${Python3_EXECUTABLE}" "${script}" "${PROJECT_SOURCE_DIR}"
    COMMAND "${CMAKE_COMMAND}" -E touch "${stamp}"
    DEPENDS "${script}" ${checked}
    COMMENT "Checking that includes point down the layers"
    VERBATIM)
add_custom_target(check_layers ALL DEPENDS "${stamp}")

# vexomu_check_headers(<name> <folder> <target>): compiles every header of a folder on its own, as a user of <target>.
function(vexomu_check_headers name folder target)
    file(GLOB headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${folder}/*.h")
    set(units "")
    foreach(header IN LISTS headers)
        cmake_path(GET header FILENAME leaf)
        set(unit "${PROJECT_BINARY_DIR}/headers/${leaf}.cpp")
        file(CONFIGURE OUTPUT "${unit}" CONTENT "#include \"${leaf}\"\n")
        list(APPEND units "${unit}")
    endforeach()
    add_library(${name} OBJECT ${units})
    target_link_libraries(${name} PRIVATE ${target} vexomu_options)
endfunction()

# A header says the same with a sanitizer or for another system, so only the ordinary builds look at that.
set(VEXOMU_CHECK_HEADERS OFF)
if(VEXOMU_BUILD_TESTS AND NOT VEXOMU_SANITIZE AND NOT CMAKE_CROSSCOMPILING)
    set(VEXOMU_CHECK_HEADERS ON)
endif()
if(VEXOMU_CHECK_HEADERS)
    vexomu_check_headers(check_platform_headers platform/include VEXutl)
    vexomu_check_headers(check_source_headers source/include VEXomu)
endif()
