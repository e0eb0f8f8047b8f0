# The Debian packages, one a component: cpack in a build folder with NORVAKAVLOR_PACKAGES writes them to build/packages.
# The owner names who keeps them.
set(NORVAKAVLOR_MAINTAINER "NorvaKavlor <maintainers@norvakavlor.example>" CACHE STRING "Whom the packages name")
set(debian_revision 1)
set(debian_version ${PROJECT_VERSION}-${debian_revision})
set(CMAKE_INSTALL_LIBDIR lib/${CMAKE_LIBRARY_ARCHITECTURE})

# A release has an entry in CHANGELOG.md: Debian's takes its date from there.
file(STRINGS CHANGELOG.md entry REGEX "^## \\[${PROJECT_VERSION}\\] - [0-9-]+$")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
if(NOT entry)
    message(FATAL_ERROR "CHANGELOG.md has no entry for ${PROJECT_VERSION}")
endif()
string(REGEX REPLACE ".* " "" release_day "${entry}")
execute_process(COMMAND date -R -u -d ${release_day} OUTPUT_VARIABLE release_date OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)
set(debian_folder ${PROJECT_BINARY_DIR}/debian)
configure_file(packaging/debian/changelog.in ${debian_folder}/changelog.Debian @ONLY)
configure_file(CHANGELOG.md ${debian_folder}/changelog COPYONLY)
execute_process(COMMAND gzip -9nkf changelog.Debian changelog WORKING_DIRECTORY ${debian_folder} COMMAND_ERROR_IS_FATAL ANY)

# The Python package without the library: that comes with a package of its own.
set(python_files ${PROJECT_BINARY_DIR}/python)
file(GLOB python_sources CONFIGURE_DEPENDS python/norvakavlor/*)
add_custom_command(OUTPUT ${python_files}/.made
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${python_files}
    COMMAND /usr/bin/python3 ${PROJECT_SOURCE_DIR}/python/build_wheel --unpacked ${python_files} --library $<TARGET_SONAME_FILE:norvakavlor>
    COMMAND ${CMAKE_COMMAND} -E touch ${python_files}/.made
    DEPENDS norvakavlor python/build_wheel docs/python.md ${python_sources} VERBATIM)
add_custom_target(python_package ALL DEPENDS ${python_files}/.made)
install(DIRECTORY ${python_files}/ DESTINATION lib/python3/dist-packages COMPONENT python PATTERN .made EXCLUDE)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/build/packages)
set(CPACK_PACKAGE_NAME norvakavlor)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "${NORVAKAVLOR_MAINTAINER}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${debian_revision})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_COMPONENTS_ALL library development tools python)

# COMPONENT PACKAGE SECTION DESCRIPTION [DEPENDS...]; the description's first line is the summary.
function(debian_package component package section description)
    string(TOUPPER ${component} key)
    list(JOIN ARGN ", " depends)
    set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${package} PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_PACKAGE_SECTION ${section} PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_PACKAGE_DEPENDS "${depends}" PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_DESCRIPTION "${description}" PARENT_SCOPE)
    file(GLOB control CONFIGURE_DEPENDS packaging/debian/${package}/*)
    set(CPACK_DEBIAN_${key}_PACKAGE_CONTROL_EXTRA "${control}" PARENT_SCOPE)
    install(FILES packaging/debian/copyright ${debian_folder}/changelog.Debian.gz ${debian_folder}/changelog.gz
        DESTINATION share/doc/${package} COMPONENT ${component})
endfunction()

set(about "NorvaKavlor's classes hold textbooks, courses, objectives and tasks, question
pools, exams and attempts, rosters, lessons and students' results. Every object
is an XML document, in a folder or on the product's server.")
debian_package(library libnorvakavlor1 libs "objects for computer-skills training and assessment
${about}
.
This package has the shared library, for C++ and C.")
debian_package(development libnorvakavlor-dev libdevel "objects for computer-skills training and assessment (development)
${about}
.
This package has the headers, the library to link, shared and static, what
find_package and pkg-config read, and a first example."
    "libnorvakavlor1 (= ${debian_version})" libexpat1-dev libcurl4-openssl-dev libssl-dev)
debian_package(tools kavlor-tools utils "programs for the administrators of NorvaKavlor
kavlor checks an installation's documents, imports and exports rosters, sums
up exams and writes a school's report. kavlor-server serves a folder's
documents to NorvaKavlor's clients.")
debian_package(python python3-norvakavlor python "objects for computer-skills training and assessment (Python 3)
${about}
.
This package has the classes for Python 3."
    "libnorvakavlor1 (>= ${PROJECT_VERSION})" "python3:any (>= 3.9)")
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
install(FILES examples/first/first.cpp examples/first/CMakeLists.txt DESTINATION share/doc/libnorvakavlor-dev/examples
    COMPONENT development)
install(FILES examples/first/first.py examples/python/school_year.py DESTINATION share/doc/python3-norvakavlor/examples
    COMPONENT python)
include(CPack)
