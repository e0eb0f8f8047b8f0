# Manual pages are made of what programs say of themselves; without help2man there are none.
find_program(HELP2MAN help2man)

# A page of a program, or of one of its commands: kavlor-check.1.gz says what `kavlor check --help` does.
function(add_manual_page program)
    if(NOT HELP2MAN)
        return()
    endif()
    list(JOIN ARGV "-" page)
    set(file ${PROJECT_BINARY_DIR}/man/${page}.1.gz)
    set(maker ${PROJECT_SOURCE_DIR}/packaging/manual_page)
    add_custom_command(OUTPUT ${file}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/man
        COMMAND ${maker} ${PROJECT_VERSION} ${file} $<TARGET_FILE:${program}> ${ARGN}
        DEPENDS ${program} ${maker} VERBATIM)
    add_custom_target(manual_${page} ALL DEPENDS ${file})
endfunction()
