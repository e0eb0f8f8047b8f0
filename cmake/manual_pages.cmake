# Manual pages are made of what programs say of themselves; without help2man there are none.
find_program(HELP2MAN help2man)

# A page of a program, or of one of its commands: kavlor-check.1.gz says what `kavlor check --help` does.
function(add_manual_page program title)
    if(NOT HELP2MAN)
        return()
    endif()
    list(JOIN ARGN " " command)
    string(STRIP "${program} ${command}" said)
    string(REPLACE " " "-" page "${said}")
    set(file ${PROJECT_BINARY_DIR}/man/${page}.1)
    add_custom_command(OUTPUT ${file}.gz
        COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/man
        COMMAND ${HELP2MAN} -N --version-string=${PROJECT_VERSION} -n ${title} -o ${file}
            "$<TARGET_FILE_DIR:${program}>/./${said}"
        COMMAND sed -i "s/^${said} /${page} /" ${file}
        COMMAND gzip -9nf ${file}
        DEPENDS ${program} VERBATIM)
    add_custom_target(manual_${page} ALL DEPENDS ${file}.gz)
endfunction()
