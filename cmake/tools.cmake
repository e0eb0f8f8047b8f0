# kavlor, the administrators' program, on the public classes. CLI11 and nlohmann-json are headers alone.
find_path(CLI11_HEADERS CLI/CLI.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH)
find_path(JSON_HEADERS nlohmann/json.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH)
if(NOT CLI11_HEADERS OR NOT JSON_HEADERS)
    message(STATUS "No CLI11 or nlohmann-json: kavlor is left out")
    return()
endif()
# Links to the two folders: a cross compiler must not see what else stands beside them.
set(tool_headers ${PROJECT_BINARY_DIR}/tool_headers)
file(MAKE_DIRECTORY ${tool_headers})
file(CREATE_LINK ${CLI11_HEADERS}/CLI ${tool_headers}/CLI SYMBOLIC)
file(CREATE_LINK ${JSON_HEADERS}/nlohmann ${tool_headers}/nlohmann SYMBOLIC)

file(GLOB tool_sources CONFIGURE_DEPENDS tools/kavlor/*.cpp)
if(WIN32)
    list(FILTER tool_sources EXCLUDE REGEX "_native\\.cpp$")
else()
    list(FILTER tool_sources EXCLUDE REGEX "_windows\\.cpp$")
endif()
# All but main, so that tests can ask the parts.
list(FILTER tool_sources EXCLUDE REGEX "/main\\.cpp$")
add_library(kavlor_commands STATIC ${tool_sources})
# Each command is a lambda that captures a type of its own file, which no other file may see.
set_target_properties(kavlor_commands PROPERTIES UNITY_BUILD OFF)
target_include_directories(kavlor_commands SYSTEM PRIVATE ${tool_headers})
# Tests link both this and what the library does not show; in a shared build these must be one copy.
target_link_libraries(kavlor_commands PUBLIC $<IF:$<TARGET_EXISTS:norvakavlor_internal>,norvakavlor_internal,norvakavlor>)
add_executable(kavlor tools/kavlor/main.cpp)
target_link_libraries(kavlor PRIVATE kavlor_commands)
if(WIN32)
    target_link_libraries(kavlor_commands PUBLIC shell32)
    target_link_options(kavlor PRIVATE -s)
    set_source_files_properties(tools/kavlor/console_windows.cpp PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    return()
endif()

# What the program says of itself makes its completion and its manual pages.
add_custom_command(OUTPUT ${PROJECT_BINARY_DIR}/completions/kavlor
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/completions
    COMMAND $<TARGET_FILE:kavlor> completion > ${PROJECT_BINARY_DIR}/completions/kavlor
    DEPENDS kavlor VERBATIM)
add_custom_target(kavlor_completion ALL DEPENDS ${PROJECT_BINARY_DIR}/completions/kavlor)
file(GLOB commands CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}/tools/kavlor tools/kavlor/*_command.cpp)
list(TRANSFORM commands REPLACE "_command.cpp$" "")
add_manual_page(kavlor)
foreach(command IN LISTS commands)
    add_manual_page(kavlor ${command})
endforeach()
