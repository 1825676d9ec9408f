# Instrumentation of the whole build. Included before any target is made.

if(MTRANSLATE_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()

if(MTRANSLATE_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "MTRANSLATE_FUZZ needs clang++ (-DCMAKE_CXX_COMPILER=clang++)")
    endif()
    add_link_options(-fsanitize=fuzzer-no-link)
endif()
