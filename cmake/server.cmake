# The development server, and the one that misbehaves for the tests.
file(GLOB server_sources CONFIGURE_DEPENDS tools/server/*.cpp)
find_package(Threads REQUIRED)
find_library(CPP_HTTPLIB cpp-httplib REQUIRED)
# All but what carries the requests; tests link it.
list(FILTER server_sources EXCLUDE REGEX "/(main|http_front)\\.cpp$")
add_library(kavlor_service STATIC ${server_sources})
target_link_libraries(kavlor_service PUBLIC norvakavlor)
add_executable(kavlor-server tools/server/main.cpp tools/server/http_front.cpp)
target_link_libraries(kavlor-server PRIVATE kavlor_service ${CPP_HTTPLIB} Threads::Threads)
# Debian's library is built with these; its classes have another layout without them.
target_compile_definitions(kavlor-server PRIVATE
    CPPHTTPLIB_OPENSSL_SUPPORT CPPHTTPLIB_ZLIB_SUPPORT CPPHTTPLIB_BROTLI_SUPPORT)
install(TARGETS kavlor-server)

add_executable(misbehaving_server tests/support/misbehaving_server.cpp tests/support/tables.cpp)
target_include_directories(misbehaving_server PRIVATE ${PROJECT_SOURCE_DIR})
target_link_libraries(misbehaving_server PRIVATE Threads::Threads)
