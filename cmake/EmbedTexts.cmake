# mtranslate_embed_texts(HEADER FILE...): writes a C++ header with the files as texts, when the build
# is configured, and again when one of them has changed. The text of page.html is page_html.
function(mtranslate_embed_texts header)
    set(text "#pragma once\n\n#include <string_view>\n")
    foreach(file IN LISTS ARGN)
        get_filename_component(name "${file}" NAME)
        string(MAKE_C_IDENTIFIER "${name}" name)
        file(READ "${file}" content)
        string(APPEND text "\nconstexpr std::string_view ${name} = R\"TEXT(${content})TEXT\";\n")
    endforeach()
    file(CONFIGURE OUTPUT "${header}" CONTENT "@text@" @ONLY)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${ARGN})
endfunction()
