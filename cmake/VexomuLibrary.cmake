# The shared libraries and the layers VEXomu is made of.

set(other_system windows)
if(WIN32)
    set(other_system posix)
endif()

# Sets <out> to the C++ sources of a folder, less those named after another operating system; a source added later
# is noticed by the next build.
function(vexomu_sources out folder)
    file(GLOB sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${folder}/*.cpp")
    list(FILTER sources EXCLUDE REGEX "_${other_system}\\.cpp$")
    if(NOT sources)
        set(sources "${PROJECT_BINARY_DIR}/empty.cpp")
        file(WRITE "${sources}" "")
    endif()
    set(${out} "${sources}" PARENT_SCOPE)
endfunction()

# A library's calls to its own exported functions need no detour for functions that a program might put in their place.
set(vexomu_own_calls "")
if(NOT WIN32)
    set(vexomu_own_calls -fno-semantic-interposition)
endif()

# vexomu_layer(<name> SOURCES <folder> LINKS <targets>): the objects of one layer of VEXomu.
function(vexomu_layer name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "SOURCES" "LINKS")
    vexomu_sources(sources ${arg_SOURCES})
    add_library(${name} OBJECT ${sources})
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/source/include")
    target_compile_definitions(${name} PRIVATE VEXomu_EXPORTS)
    target_compile_options(${name} PRIVATE ${vexomu_own_calls})
    target_link_libraries(${name} PRIVATE vexomu_options ${arg_LINKS})
endfunction()

# vexomu_library(<name> HEADERS <folder> [SOURCES <folder>] [LAYERS <targets>] [LINKS <targets>]):
# a shared library made from a folder or from layers. What it links is seen by its users too: the headers show it.
function(vexomu_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "HEADERS;SOURCES" "LAYERS;LINKS")
    if(arg_SOURCES)
        vexomu_sources(sources ${arg_SOURCES})
    endif()
    list(TRANSFORM arg_LAYERS REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>")
    add_library(${name} SHARED ${sources} ${arg_LAYERS})
    add_library(VEXomu::${name} ALIAS ${name})
    target_include_directories(${name} PUBLIC
        "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/${arg_HEADERS}>"
        "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/vexomu>")
    target_compile_features(${name} PUBLIC cxx_std_20)
    target_compile_definitions(${name} PUBLIC $<$<BOOL:${VEXOMU_COUNT_CLONES}>:VEXUTL_COUNT_CLONES>)
    target_link_libraries(${name} PUBLIC ${arg_LINKS} PRIVATE $<BUILD_INTERFACE:vexomu_options>)
    target_compile_options(${name} PRIVATE ${vexomu_own_calls})
    if(WIN32)
        vexomu_version_resource(${name})
        set_target_properties(${name} PROPERTIES PREFIX "")
    else()
        target_link_options(${name} PRIVATE -Wl,-Bsymbolic-functions)
    endif()
    set_target_properties(${name} PROPERTIES
        LINKER_LANGUAGE CXX
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        INSTALL_RPATH "$ORIGIN")
endfunction()
