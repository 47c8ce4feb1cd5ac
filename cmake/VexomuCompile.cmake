# How the project's own code is compiled: language, warnings, visibility, sanitizers.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_COMPILE_WARNING_AS_ERROR ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_INTERPROCEDURAL_OPTIMIZATION ${VEXOMU_IPO})

# One folder for programs and libraries: on Windows a program finds its DLLs beside itself.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Kind of build" FORCE)
endif()

find_program(VEXOMU_CCACHE ccache)
if(VEXOMU_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${VEXOMU_CCACHE}")
endif()

add_library(vexomu_options INTERFACE)
target_compile_options(vexomu_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
# Clang counts changes of sign among the conversions, GCC does not.
target_compile_options(vexomu_options INTERFACE $<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion>)
target_compile_definitions(vexomu_options INTERFACE $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
if(VEXOMU_SANITIZE)
    target_compile_options(vexomu_options INTERFACE
        -fsanitize=${VEXOMU_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(vexomu_options INTERFACE -fsanitize=${VEXOMU_SANITIZE})
else()
    # A library that uses what no library below it offers must not link. (Sanitizers leave such symbols on purpose.)
    set(CMAKE_SHARED_LINKER_FLAGS "${CMAKE_SHARED_LINKER_FLAGS} -Wl,--no-undefined")
endif()
