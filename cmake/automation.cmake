# The Automation server NorvaKavlor.dll with its type library, from the committed NorvaKavlor.idl.
set(automation_folder ${PROJECT_SOURCE_DIR}/norvakavlor/component/automation)
set(type_library ${PROJECT_BINARY_DIR}/NorvaKavlor.tlb)

string(REGEX REPLACE "windres$" "widl" widl_of_toolchain "${CMAKE_RC_COMPILER}")
get_filename_component(widl_of_toolchain "${widl_of_toolchain}" NAME)
find_program(WIDL NAMES ${widl_of_toolchain} widl REQUIRED)
# Every type library needs this one; Wine brings it. It is the same for both bitnesses.
find_file(STANDARD_TYPE_LIBRARY stdole2.tlb REQUIRED NO_CMAKE_FIND_ROOT_PATH
    PATHS /usr/lib/x86_64-linux-gnu /usr/lib /usr/lib64 /usr/local/lib
    PATH_SUFFIXES wine/x86_64-windows wine/i386-windows wine)
get_filename_component(standard_library_folder ${STANDARD_TYPE_LIBRARY} DIRECTORY)
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(widl_target --win64)
else()
    set(widl_target --win32)
endif()

add_custom_command(OUTPUT ${type_library}
    COMMAND ${WIDL} ${widl_target} -t -L${standard_library_folder} -o ${type_library}
        ${automation_folder}/NorvaKavlor.idl
    COMMAND ${CMAKE_COMMAND} -E copy_if_different ${automation_folder}/NorvaKavlor.idl ${PROJECT_BINARY_DIR}
    DEPENDS ${automation_folder}/NorvaKavlor.idl
    COMMENT "Compiling the type library")
add_custom_target(type_library DEPENDS ${type_library})

# All but the DLL's own resources, so a test program can be such a server too.
file(GLOB automation_sources CONFIGURE_DEPENDS ${automation_folder}/*.cpp)
add_library(norvakavlor_automation STATIC ${automation_sources})
target_link_libraries(norvakavlor_automation PUBLIC norvakavlor)
set_target_properties(norvakavlor_automation PROPERTIES UNITY_BUILD OFF)

set(automation_resources ${PROJECT_BINARY_DIR}/NorvaKavlor.rc)
configure_file(${automation_folder}/NorvaKavlor.rc.in ${automation_resources} @ONLY)
enable_language(RC)
set_source_files_properties(${automation_resources} PROPERTIES
    OBJECT_DEPENDS ${type_library} COMPILE_OPTIONS "-I${PROJECT_BINARY_DIR}")
add_library(automation_server SHARED ${automation_resources} ${automation_folder}/NorvaKavlor.def)
add_dependencies(automation_server type_library)
set_target_properties(automation_server PROPERTIES OUTPUT_NAME NorvaKavlor PREFIX "" LINKER_LANGUAGE CXX)
target_link_libraries(automation_server PRIVATE
    -Wl,--whole-archive norvakavlor_automation -Wl,--no-whole-archive)
# Export the functions without the argument sizes in 32-bit names.
target_link_options(automation_server PRIVATE -s -Wl,--enable-stdcall-fixup)
