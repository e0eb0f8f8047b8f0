# cmake --install build/native --prefix /usr/local: the library, its public headers, what
# find_package(NorvaKavlor) and pkg-config read, kavlor-server. For Windows, the DLL with its type library.
# The components are the packages (packages.cmake).
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

# What find_package reads of each kind of library is a set of its own, so that both can be installed beside each other.
set(config_folder ${CMAKE_INSTALL_LIBDIR}/cmake/NorvaKavlor)
function(install_library target kind)
    install(TARGETS ${target} EXPORT NorvaKavlor-${kind}
        LIBRARY COMPONENT library NAMELINK_COMPONENT development
        ARCHIVE COMPONENT development
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} ${ARGN})
    install(EXPORT NorvaKavlor-${kind} NAMESPACE NorvaKavlor:: DESTINATION ${config_folder} COMPONENT development)
endfunction()
set(header_sets FILE_SET HEADERS COMPONENT development FILE_SET made COMPONENT development)
if(BUILD_SHARED_LIBS)
    install_library(norvakavlor shared ${header_sets})
    install_library(norvakavlor_internal static)
else()
    install_library(norvakavlor static ${header_sets})
endif()

include(CMakePackageConfigHelpers)
configure_file(cmake/NorvaKavlorConfig.cmake.in ${PROJECT_BINARY_DIR}/NorvaKavlorConfig.cmake @ONLY)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/NorvaKavlorConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/NorvaKavlorConfig.cmake ${PROJECT_BINARY_DIR}/NorvaKavlorConfigVersion.cmake
    DESTINATION ${config_folder} COMPONENT development)

# The prefix is found from the file, as with find_package: what is installed may be moved.
# Who links the static library names what that needs, also without asking for it if there is no other one.
set(private ".private")
if(NOT BUILD_SHARED_LIBS)
    set(private "")
endif()
set(pkgconfig_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH prefix_from_pkgconfig /${pkgconfig_folder} /)
string(REGEX REPLACE "/$" "" prefix_from_pkgconfig ${prefix_from_pkgconfig})
configure_file(cmake/norvakavlor.pc.in ${PROJECT_BINARY_DIR}/norvakavlor.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/norvakavlor.pc DESTINATION ${pkgconfig_folder} COMPONENT development)

foreach(program kavlor kavlor-server)
    if(TARGET ${program})
        install(TARGETS ${program} COMPONENT tools)
    endif()
endforeach()
if(TARGET kavlor)
    install(FILES ${PROJECT_BINARY_DIR}/completions/kavlor
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools)
endif()
install(DIRECTORY ${PROJECT_BINARY_DIR}/man/ DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools
    FILES_MATCHING PATTERN "*.1.gz")
