# The native tests without those for Linux only (*_native.cpp), as one program for Wine. GoogleTest comes as
# source (Debian's package googletest) and is built for Windows here.
set(GOOGLETEST_SOURCE /usr/src/googletest CACHE PATH "Where GoogleTest's source is")

list(FILTER test_sources EXCLUDE REGEX "_native\\.cpp$")
if(NOT EXISTS ${GOOGLETEST_SOURCE}/CMakeLists.txt)
    message(STATUS "No GoogleTest in ${GOOGLETEST_SOURCE}: the tests are left out")
    return()
endif()
add_subdirectory(${GOOGLETEST_SOURCE} googletest EXCLUDE_FROM_ALL)
foreach(library gtest gtest_main gmock gmock_main)
    target_compile_options(${library} PRIVATE -w) # its warnings are not ours
endforeach()

# The C++ client of the Automation server. Library and server are linked in, so tests can add a class. Loading
# and unloading is tested on NorvaKavlor.dll beside it.
file(GLOB client_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/automation/*.cpp)
add_executable(norvakavlor_tests ${test_sources} ${client_sources} ${automation_resources})
add_dependencies(norvakavlor_tests type_library automation_server)
target_link_libraries(norvakavlor_tests PRIVATE norvakavlor_automation norvakavlor gmock gtest_main psapi)
target_compile_options(norvakavlor_tests PRIVATE -Wa,-mbig-obj)
compile_quickly(norvakavlor_tests)

# One run for all: Wine takes half a second to start a program. wine.sh's 125 means "not here".
add_test(NAME norvakavlor_tests COMMAND ${PROJECT_SOURCE_DIR}/tests/support/with_servers
    ${PROJECT_SOURCE_DIR}/tests/support/wine.sh $<TARGET_FILE:norvakavlor_tests>)
set_tests_properties(norvakavlor_tests PROPERTIES SKIP_RETURN_CODE 125)

# For bench/run under Wine only.
add_executable(kavlor_bench_creation EXCLUDE_FROM_ALL ${PROJECT_SOURCE_DIR}/bench/creation_windows.cpp)
target_link_libraries(kavlor_bench_creation PRIVATE norvakavlor)
