# Collects the C++ sources directly in the given folders, relative to the caller; new files are found by themselves.
function(pmx_collect_sources variable)
    set(found)
    foreach(folder IN LISTS ARGN)
        file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp)
        list(APPEND found ${sources})
    endforeach()
    set(${variable} ${found} PARENT_SCOPE)
endfunction()

# The standard headers that most sources include, compiled once for all that pmx_precompile is told of: building takes half
# the time. What is shipped is built without, so a source that leaves out a header it needs does not get far.
if(PMX_TESTS)
    file(GENERATE OUTPUT ${CMAKE_BINARY_DIR}/standard_headers.cpp CONTENT "")
    add_library(pmx_standard_headers OBJECT ${CMAKE_BINARY_DIR}/standard_headers.cpp)
    target_precompile_headers(pmx_standard_headers PRIVATE
        <algorithm> <array> <functional> <memory> <optional> <string> <string_view> <utility> <vector>)
endif()
function(pmx_precompile name)
    if(PMX_TESTS)
        target_precompile_headers(${name} REUSE_FROM pmx_standard_headers)
    endif()
endfunction()

# A static library of one layer.
function(pmx_add_layer name)
    cmake_parse_arguments(LAYER "" "" "FOLDERS;EXCLUDE;LINKS" ${ARGN})
    pmx_collect_sources(sources ${LAYER_FOLDERS})
    list(TRANSFORM LAYER_EXCLUDE PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
    list(REMOVE_ITEM sources ${LAYER_EXCLUDE})
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include)
    target_link_libraries(${name} PUBLIC ${LAYER_LINKS})
    pmx_precompile(${name})
endfunction()

# A library of resources, the texts and dialogs of another one in another language: a resource script or the object that
# was made of it. Its only code is the entry point that the linker insists on.
function(pmx_add_resource_library name resources)
    file(CONFIGURE OUTPUT resources_only.c CONTENT
        "__attribute__((no_profile_instrument_function)) int DllMainCRTStartup(void) { return 1; }\n")
    add_library(${name} MODULE ${resources} ${CMAKE_CURRENT_BINARY_DIR}/resources_only.c)
    set_target_properties(${name} PROPERTIES PREFIX "")
    target_link_options(${name} PRIVATE -nostdlib)
endfunction()
