# The native tests, and kavlor-idl, which writes the type library's source, the identifiers and the reference
# page from the classes' tables. The tests check that it would change nothing.
file(GLOB description_sources CONFIGURE_DEPENDS tools/idl/*.cpp)
list(FILTER description_sources EXCLUDE REGEX "/main\\.cpp$")
add_library(kavlor_descriptions STATIC ${description_sources})
target_link_libraries(kavlor_descriptions PUBLIC norvakavlor_internal PRIVATE OpenSSL::Crypto)
add_executable(kavlor-idl tools/idl/main.cpp)
target_link_libraries(kavlor-idl PRIVATE kavlor_descriptions)

add_executable(misbehaving_server tests/support/misbehaving_server.cpp tests/support/tables.cpp)
target_link_libraries(misbehaving_server PRIVATE kavlor_service Threads::Threads)

# The library and the demo build without GoogleTest.
find_package(GTest)
if(NOT GTest_FOUND)
    message(STATUS "No GoogleTest: the tests are left out")
    return()
endif()
list(FILTER test_sources EXCLUDE REGEX "_windows\\.cpp$")
if(NOT TARGET kavlor)
    list(FILTER test_sources EXCLUDE REGEX "/kavlor_")
endif()
add_executable(norvakavlor_tests ${test_sources} tests/support/client.cpp)
target_link_libraries(norvakavlor_tests PRIVATE kavlor_service kavlor_descriptions norvakavlor_internal GTest::gmock GTest::gtest_main)
compile_quickly(norvakavlor_tests)
if(TARGET kavlor)
    target_link_libraries(norvakavlor_tests PRIVATE kavlor_commands)
    add_dependencies(norvakavlor_tests kavlor)
    set_source_files_properties(tests/kavlor_native.cpp PROPERTIES COMPILE_DEFINITIONS
        "KAVLOR_SOURCE_FOLDER=\"${PROJECT_SOURCE_DIR}\";KAVLOR_PROGRAM=\"$<TARGET_FILE:kavlor>\"")
endif()
# One run for all: a process for each test would take longer.
add_test(NAME norvakavlor_tests COMMAND ${PROJECT_SOURCE_DIR}/tests/support/with_servers $<TARGET_FILE:norvakavlor_tests>)
set_tests_properties(norvakavlor_tests PROPERTIES ENVIRONMENT XDG_CONFIG_HOME=${PROJECT_BINARY_DIR}/config)

# The C interface has a program of its own, small enough to be built for ThreadSanitizer as well.
add_executable(norvakavlor_c_tests tests/c/c_interface_test.cpp)
target_link_libraries(norvakavlor_c_tests PRIVATE norvakavlor_internal GTest::gtest_main)
add_test(NAME norvakavlor_c_tests COMMAND norvakavlor_c_tests)
