# The scanner and the parser, generated into the build tree.

# Outside of any folder named src, so that no tool takes what is generated for a source.
set(MTRANSLATE_GENERATED_DIR "${PROJECT_BINARY_DIR}/generated")
file(MAKE_DIRECTORY "${MTRANSLATE_GENERATED_DIR}")

# Makes scanner.cc from the flex source.
function(mtranslate_scanner source)
    cmake_path(ABSOLUTE_PATH source)
    set(output "${MTRANSLATE_GENERATED_DIR}/scanner.cc")
    add_custom_command(OUTPUT "${output}"
        COMMAND ${FLEX_EXECUTABLE} "--outfile=${output}" "${source}"
        DEPENDS "${source}"
        COMMENT "Generating the scanner"
        VERBATIM)
    # What flex writes around the rules: its line counting compares signed with unsigned, and not
    # every helper is called.
    set_source_files_properties("${output}" PROPERTIES
        COMPILE_OPTIONS "-Wno-sign-compare;-Wno-unused-function")
endfunction()

# Makes grammar.cc from the bison source and checks that its automaton has the given numbers of
# states and of conflicts: an edit that changes the language changes one of them almost always.
function(mtranslate_parser source states shifts reductions)
    cmake_path(ABSOLUTE_PATH source)
    set(output "${MTRANSLATE_GENERATED_DIR}/grammar.cc")
    set(report "${MTRANSLATE_GENERATED_DIR}/grammar.output")
    set(check "${PROJECT_SOURCE_DIR}/cmake/CheckAutomaton.cmake")
    add_custom_command(OUTPUT "${output}" BYPRODUCTS "${report}"
        COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C ${BISON_EXECUTABLE} -Wall -Werror
            -Wno-conflicts-sr -Wno-conflicts-rr
            --report=states "--report-file=${report}" "--output=${output}" "${source}"
        COMMAND ${CMAKE_COMMAND} "-DREPORT=${report}" -DSTATES=${states} -DSHIFTS=${shifts}
            -DREDUCTIONS=${reductions} -P "${check}"
        DEPENDS "${source}" "${check}"
        COMMENT "Generating the parser"
        VERBATIM)
    # The skeleton counts errors also where nothing reads the count.
    set_source_files_properties("${output}" PROPERTIES
        COMPILE_OPTIONS "-Wno-unused-but-set-variable")
endfunction()
