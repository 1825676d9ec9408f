# What the parts that are built need from elsewhere. All that is missing is named at once, with the
# Debian packages that have it.

if(MTRANSLATE_TESTS AND NOT MTRANSLATE_TOOL)
    message(FATAL_ERROR "The tests run the tool: give -DMTRANSLATE_TESTS=OFF with -DMTRANSLATE_TOOL=OFF")
endif()

set(missing_packages "")

# mtranslate_need(PACKAGE DEBIAN_PACKAGE [VERSION])
macro(mtranslate_need package debian_package)
    find_package(${package} ${ARGN} QUIET)
    if(NOT ${package}_FOUND)
        string(JOIN " " wanted ${package} ${ARGN})
        string(APPEND missing_text "\n  ${wanted} (Debian's ${debian_package})")
        list(APPEND missing_packages ${debian_package})
    endif()
endmacro()

mtranslate_need(FLEX flex 2.6)
mtranslate_need(BISON bison 3.8)
# The manual page and what Debian's packages have of their own are compressed.
if(MTRANSLATE_TOOL OR (MTRANSLATE_INSTALL AND PROJECT_IS_TOP_LEVEL))
    find_program(GZIP gzip)
    if(NOT GZIP)
        string(APPEND missing_text "\n  gzip (Debian's gzip)")
        list(APPEND missing_packages gzip)
    endif()
endif()
if(MTRANSLATE_TOOL)
    mtranslate_need(CLI11 libcli11-dev)
    mtranslate_need(cereal libcereal-dev)
    mtranslate_need(tomlplusplus libtomlplusplus-dev)
    mtranslate_need(nlohmann_json nlohmann-json3-dev)
    set(ZLIB_USE_STATIC_LIBS ${MTRANSLATE_STATIC_TOOL})
    mtranslate_need(ZLIB zlib1g-dev)
endif()
if(MTRANSLATE_TESTS)
    mtranslate_need(GTest libgtest-dev)
endif()
if(MTRANSLATE_BENCH)
    mtranslate_need(benchmark libbenchmark-dev)
endif()

if(missing_packages)
    list(JOIN missing_packages " " missing_packages)
    message(FATAL_ERROR "mtranslate needs what is not here:${missing_text}\n"
        "On Debian:  apt-get install ${missing_packages}\n"
        "Or leave parts out: -DMTRANSLATE_TESTS=OFF, -DMTRANSLATE_BENCH=OFF, -DMTRANSLATE_TOOL=OFF")
endif()
