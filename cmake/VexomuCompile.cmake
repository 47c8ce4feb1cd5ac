# How the project's own code is compiled: language, warnings, visibility, sanitizers.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# One folder for programs and libraries: on Windows a program finds its DLLs beside itself.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Kind of build" FORCE)
endif()

add_library(vexomu_options INTERFACE)
target_compile_options(vexomu_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
if(VEXOMU_SANITIZE)
    target_compile_options(vexomu_options INTERFACE
        -fsanitize=${VEXOMU_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(vexomu_options INTERFACE -fsanitize=${VEXOMU_SANITIZE})
endif()
