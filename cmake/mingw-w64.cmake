# Windows by MinGW-w64: VEXOMU_WINDOWS is x86 or x64. The libraries that VEXomu stands on are those that
# scripts/windows-setup made.
set(VEXOMU_WINDOWS x64 CACHE STRING "Kind of Windows: x86 or x64")
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VEXOMU_WINDOWS)

set(CMAKE_SYSTEM_NAME Windows)
if(VEXOMU_WINDOWS STREQUAL "x86")
    set(CMAKE_SYSTEM_PROCESSOR x86)
    set(machine i686-w64-mingw32)
    # Doubles as on the other systems, not in the wider registers; older code may call with a stack aligned to 4 bytes.
    set(CMAKE_C_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
    set(CMAKE_CXX_FLAGS_INIT "${CMAKE_C_FLAGS_INIT}")
else()
    set(CMAKE_SYSTEM_PROCESSOR AMD64)
    set(machine x86_64-w64-mingw32)
endif()
set(CMAKE_C_COMPILER ${machine}-gcc-posix)
set(CMAKE_CXX_COMPILER ${machine}-g++-posix)
set(CMAKE_RC_COMPILER ${machine}-windres)

set(cache "$ENV{VEXOMU_WINDOWS_CACHE}")
if(NOT cache)
    set(cache /var/cache/vexomu-windows)
endif()
set(CMAKE_FIND_ROOT_PATH "/usr/${machine}" "${cache}/${VEXOMU_WINDOWS}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} "${cache}/${VEXOMU_WINDOWS}/lib/pkgconfig")

set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../scripts/wine-run")
