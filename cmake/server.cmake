# The development server. Only this needs an HTTP library.
file(GLOB server_sources CONFIGURE_DEPENDS tools/server/*.cpp)
find_package(Threads REQUIRED)
find_library(MICROHTTPD microhttpd REQUIRED)
# All except the HTTP part; tests link it.
list(FILTER server_sources EXCLUDE REGEX "/(main|http_front)\\.cpp$")
add_library(kavlor_service STATIC ${server_sources})
target_link_libraries(kavlor_service PUBLIC norvakavlor_internal)
add_executable(kavlor-server tools/server/main.cpp tools/server/http_front.cpp)
target_link_libraries(kavlor-server PRIVATE kavlor_service ${MICROHTTPD} Threads::Threads)
add_manual_page(kavlor-server)
