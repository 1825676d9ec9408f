# Warnings of the project's own targets.

function(mtranslate_warnings target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra $<$<BOOL:${MTRANSLATE_WERROR}>:-Werror>)
endfunction()
