# The library: everything except the Automation server, with one platform back end. It is static unless
# BUILD_SHARED_LIBS says otherwise.
file(GLOB_RECURSE library_sources CONFIGURE_DEPENDS norvakavlor/*.cpp)
list(FILTER library_sources EXCLUDE REGEX "/component/automation/")
if(WIN32)
    list(FILTER library_sources EXCLUDE REGEX "/platform/native/|/norvakavlor/c/") # clients there have Automation
else()
    list(FILTER library_sources EXCLUDE REGEX "/platform/windows/")
endif()

# The public headers: norvakavlor.h and all that it includes, just what a client needs; C has one header.
set(public_headers norvakavlor/norvakavlor.h norvakavlor/c/norvakavlor_c.h)
set(unread_headers ${public_headers})
while(unread_headers)
    list(POP_FRONT unread_headers header)
    if(header STREQUAL "norvakavlor/version.h")
        continue() # made below; it includes no header of ours
    endif()
    file(STRINGS ${PROJECT_SOURCE_DIR}/${header} include_lines REGEX "^#include <norvakavlor/")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${header})
    foreach(line IN LISTS include_lines)
        string(REGEX REPLACE "^#include <(.*)>.*" "\\1" included "${line}")
        if(NOT included IN_LIST public_headers)
            list(APPEND public_headers ${included})
            list(APPEND unread_headers ${included})
        endif()
    endforeach()
endwhile()
list(REMOVE_ITEM public_headers norvakavlor/version.h)
list(TRANSFORM public_headers PREPEND ${PROJECT_SOURCE_DIR}/)
configure_file(cmake/version.h.in ${PROJECT_BINARY_DIR}/include/norvakavlor/version.h @ONLY)

if(WIN32)
    add_library(norvakavlor STATIC ${library_sources}) # clients there take the DLL
else()
    add_library(norvakavlor ${library_sources})
endif()
add_library(NorvaKavlor::norvakavlor ALIAS norvakavlor)
target_compile_features(norvakavlor PUBLIC cxx_std_20)
target_sources(norvakavlor PUBLIC
    FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${public_headers}
    FILE_SET made TYPE HEADERS BASE_DIRS ${PROJECT_BINARY_DIR}/include
        FILES ${PROJECT_BINARY_DIR}/include/norvakavlor/version.h)

if(WIN32)
    target_link_libraries(norvakavlor PUBLIC ole32 oleaut32 uuid advapi32 user32)
    # Windows 7 and later; no macros named min, max or like our functions.
    target_compile_definitions(norvakavlor PUBLIC _WIN32_WINNT=0x0601 WIN32_LEAN_AND_MEAN NOMINMAX)
    # The system's headers define macros with our names, so the back end compiles apart from the others.
    file(GLOB back_end_sources CONFIGURE_DEPENDS norvakavlor/platform/windows/*.cpp)
    set_source_files_properties(${back_end_sources} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    # Visibility attributes are for the shared native library.
    target_compile_options(norvakavlor PUBLIC -Wno-attributes)
    return()
endif()

find_package(EXPAT REQUIRED)
find_package(CURL REQUIRED)
find_package(OpenSSL REQUIRED COMPONENTS Crypto)
set(needed_libraries EXPAT::EXPAT CURL::libcurl OpenSSL::Crypto)
target_link_libraries(norvakavlor PRIVATE ${needed_libraries})

# A shared library shows what the public headers mark. The script hides what the compiler also makes visible:
# the standard library's templates.
set_target_properties(norvakavlor PROPERTIES CXX_VISIBILITY_PRESET hidden
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
if(BUILD_SHARED_LIBS)
    target_link_options(norvakavlor PRIVATE -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map -Wl,--no-undefined)
    set_target_properties(norvakavlor PROPERTIES LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
    # The static library of the same objects: our tests and tools use more than is exported, and it is installed too.
    add_library(norvakavlor_internal STATIC EXCLUDE_FROM_ALL $<TARGET_OBJECTS:norvakavlor>)
    target_compile_features(norvakavlor_internal PUBLIC cxx_std_20)
    target_include_directories(norvakavlor_internal PUBLIC
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>)
    target_link_libraries(norvakavlor_internal PRIVATE ${needed_libraries})
    set_target_properties(norvakavlor_internal PROPERTIES OUTPUT_NAME norvakavlor EXPORT_NAME norvakavlor)
    if(NORVAKAVLOR_INSTALL)
        set_target_properties(norvakavlor_internal PROPERTIES EXCLUDE_FROM_ALL OFF)
    endif()
else()
    add_library(norvakavlor_internal ALIAS norvakavlor)
endif()
