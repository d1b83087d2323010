# The package for hosts' developers, which tools/make-package makes: what `cmake --install` puts into it as the components
# package and symbols.
include(CMakePackageConfigHelpers)

# Puts programs or libraries into a folder of the package, and what debuggers need into the same one of the symbols.
function(pmx_package folder)
    foreach(target IN LISTS ARGN)
        install(TARGETS ${target} RUNTIME DESTINATION ${folder} COMPONENT package
                                  LIBRARY DESTINATION ${folder} COMPONENT package
                                  ARCHIVE DESTINATION lib COMPONENT import)
        install(FILES ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${target}.pdb DESTINATION ${folder} COMPONENT symbols)
    endforeach()
endfunction()

pmx_package(bin PMXTemplUI ${PMX_LANGUAGE_LIBRARIES})
if(TARGET pmxfav)
    pmx_package(bin pmxfav)
endif()
pmx_package(sample PMXTemplUI ${PMX_LANGUAGE_LIBRARIES} PmxSampleHost PmxSampleHostENU PmxCClient PmxDocMgr QrtCommon PmxUser PmxNote
            PMXPropUI PMXPropUIENU)

# For each compiler what it links.
add_custom_command(OUTPUT ${CMAKE_ARCHIVE_OUTPUT_DIRECTORY}/PMXTemplUI.lib DEPENDS ${PROJECT_SOURCE_DIR}/src/frame/PMXTemplUI.def
    COMMAND llvm-dlltool -m i386:x86-64 -D PMXTemplUI.dll -d ${PROJECT_SOURCE_DIR}/src/frame/PMXTemplUI.def
            -l ${CMAKE_ARCHIVE_OUTPUT_DIRECTORY}/PMXTemplUI.lib)
add_custom_target(pmx_import_library ALL DEPENDS ${CMAKE_ARCHIVE_OUTPUT_DIRECTORY}/PMXTemplUI.lib)
install(FILES $<TARGET_LINKER_FILE:PMXTemplUI> ${CMAKE_ARCHIVE_OUTPUT_DIRECTORY}/PMXTemplUI.lib
              ${PROJECT_SOURCE_DIR}/src/frame/PMXTemplUI.def DESTINATION lib COMPONENT package)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION include COMPONENT package)

set(package_folder lib/cmake/PMXTemplUI)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/PMXTemplUIConfig.cmake.in
                              ${CMAKE_BINARY_DIR}/PMXTemplUIConfig.cmake INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/PMXTemplUIConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/PMXTemplUIConfig.cmake ${CMAKE_BINARY_DIR}/PMXTemplUIConfigVersion.cmake
        DESTINATION ${package_folder} COMPONENT package)

install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/README.ja.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md
        DESTINATION . COMPONENT package)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs DESTINATION . COMPONENT package)
# The sample's sources, to read and to copy from.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/sample DESTINATION . COMPONENT package PATTERN CMakeLists.txt EXCLUDE)
