# cmake --install build/native --prefix /usr/local: the library, its public headers, what
# find_package(NorvaKavlor) reads, kavlor-server. For Windows, the DLL with its type library.
include(GNUInstallDirs)

if(WIN32)
    if(TARGET automation_server)
        install(TARGETS automation_server RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
        install(FILES ${PROJECT_BINARY_DIR}/NorvaKavlor.tlb ${PROJECT_BINARY_DIR}/NorvaKavlor.idl
            DESTINATION ${CMAKE_INSTALL_BINDIR})
    endif()
    if(TARGET kavlor)
        install(TARGETS kavlor RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
    endif()
    return()
endif()

install(TARGETS norvakavlor EXPORT NorvaKavlorTargets FILE_SET HEADERS FILE_SET made)
if(TARGET kavlor-server)
    install(TARGETS kavlor-server)
endif()
if(TARGET kavlor)
    install(TARGETS kavlor)
    install(FILES ${PROJECT_BINARY_DIR}/completions/kavlor
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
    install(DIRECTORY ${PROJECT_BINARY_DIR}/man/ DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 FILES_MATCHING PATTERN "*.1")
endif()

include(CMakePackageConfigHelpers)
set(config_folder ${CMAKE_INSTALL_LIBDIR}/cmake/NorvaKavlor)
get_target_property(library_kind norvakavlor TYPE)
configure_package_config_file(cmake/NorvaKavlorConfig.cmake.in ${PROJECT_BINARY_DIR}/NorvaKavlorConfig.cmake
    INSTALL_DESTINATION ${config_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/NorvaKavlorConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/NorvaKavlorConfig.cmake ${PROJECT_BINARY_DIR}/NorvaKavlorConfigVersion.cmake
    DESTINATION ${config_folder})
install(EXPORT NorvaKavlorTargets NAMESPACE NorvaKavlor:: DESTINATION ${config_folder})
