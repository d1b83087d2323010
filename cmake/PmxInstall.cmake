# What a host's developer gets: the library with its import library and .def file, the headers, and a CMake package
# (find_package(PMXTemplUI), target PMXTemplUI::PMXTemplUI). The host's own libraries are not part of it.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/PMXTemplUI)
install(TARGETS PMXTemplUI EXPORT PMXTemplUITargets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        PUBLIC_HEADER DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(TARGET PMXTemplUIENU)
    install(TARGETS PMXTemplUIENU LIBRARY DESTINATION ${CMAKE_INSTALL_BINDIR}) # beside the library that looks for it
endif()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/host DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/PMXTemplUI)
install(FILES ${PROJECT_SOURCE_DIR}/src/frame/PMXTemplUI.def DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(EXPORT PMXTemplUITargets NAMESPACE PMXTemplUI:: DESTINATION ${package_folder})

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/PMXTemplUIConfig.cmake.in
                              ${CMAKE_BINARY_DIR}/PMXTemplUIConfig.cmake INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/PMXTemplUIConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/PMXTemplUIConfig.cmake ${CMAKE_BINARY_DIR}/PMXTemplUIConfigVersion.cmake
        DESTINATION ${package_folder})
