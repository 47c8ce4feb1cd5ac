# What only a DLL has: a version resource, and the compiler's runtime beside it.

enable_language(RC)

# vexomu_version_resource(<library>): what the properties of the DLL's file show.
function(vexomu_version_resource library)
    set(resource "${PROJECT_BINARY_DIR}/${library}.rc")
    string(REPLACE "." "," version "${PROJECT_VERSION}")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/version.rc.in" "${resource}" @ONLY)
    target_sources(${library} PRIVATE "${resource}")
endfunction()

# vexomu_runtime(<file>): puts a DLL beside those of the build, built or installed, without its debugging symbols.
function(vexomu_runtime source)
    cmake_path(GET source FILENAME leaf)
    set(copy "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${leaf}")
    file(MAKE_DIRECTORY "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
    execute_process(COMMAND ${CMAKE_STRIP} "${source}" -o "${copy}" COMMAND_ERROR_IS_FATAL ANY)
    install(FILES "${copy}" DESTINATION "${CMAKE_INSTALL_BINDIR}")
endfunction()

# Exceptions cross from one DLL to another only where all share one runtime.
foreach(runtime libstdc++-6 libgcc_s_seh-1 libgcc_s_dw2-1 libwinpthread-1)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${runtime}.dll
        OUTPUT_VARIABLE source OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(EXISTS "${source}")
        vexomu_runtime("${source}")
    endif()
endforeach()
