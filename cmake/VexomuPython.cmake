# The interpreter that runs the build's checks, and that extension modules are made for.

# Development files belong to the system's interpreter; one found first in PATH may have none.
if(NOT Python3_EXECUTABLE AND EXISTS /usr/bin/python3)
    set(Python3_EXECUTABLE /usr/bin/python3 CACHE FILEPATH "Python interpreter")
endif()
if(VEXOMU_BUILD_PYTHON)
    find_package(Python3 3.9 REQUIRED COMPONENTS Interpreter Development.Module)
else()
    find_package(Python3 3.9 REQUIRED COMPONENTS Interpreter)
endif()

# Where modules stand in the build, ready for PYTHONPATH.
set(VEXOMU_PYTHON_DIR "${PROJECT_BINARY_DIR}/python")
set(VEXOMU_INSTALL_PYTHON_DIR "${CMAKE_INSTALL_LIBDIR}/python${Python3_VERSION_MAJOR}.${Python3_VERSION_MINOR}/site-packages"
    CACHE STRING "Where Python modules are installed, below the prefix")

add_custom_target(python_modules)

# vexomu_python_module(<name> [NO_INSTALL] SOURCES <files> LINKS <targets>): an extension module `import <name>` finds.
# The .py and .pyi files beside its CMakeLists.txt go with it.
function(vexomu_python_module name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "NO_INSTALL" "" "SOURCES;LINKS")
    Python3_add_library(${name} MODULE WITH_SOABI ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LINKS} vexomu_options)
    add_dependencies(python_modules ${name})
    file(RELATIVE_PATH libraries "/${VEXOMU_INSTALL_PYTHON_DIR}" "/${CMAKE_INSTALL_LIBDIR}")
    set_target_properties(${name} PROPERTIES
        LIBRARY_OUTPUT_DIRECTORY "${VEXOMU_PYTHON_DIR}"
        INSTALL_RPATH "$ORIGIN/${libraries}")
    if(arg_NO_INSTALL)
        return()
    endif()
    install(TARGETS ${name} LIBRARY DESTINATION "${VEXOMU_INSTALL_PYTHON_DIR}" COMPONENT python)

    file(GLOB files CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.py" "${CMAKE_CURRENT_SOURCE_DIR}/*.pyi")
    foreach(file IN LISTS files)
        cmake_path(GET file FILENAME leaf)
        file(MAKE_DIRECTORY "${VEXOMU_PYTHON_DIR}")
        file(CREATE_LINK "${file}" "${VEXOMU_PYTHON_DIR}/${leaf}" SYMBOLIC)
        install(FILES "${file}" DESTINATION "${VEXOMU_INSTALL_PYTHON_DIR}" COMPONENT python)
    endforeach()
endfunction()
