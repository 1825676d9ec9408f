# Debian packages: "cpack" in the folder of the build makes mtranslate (the tool), libmtranslate0.1
# and libmtranslate-dev.

get_target_property(soversion mtranslate SOVERSION)
set(library_package "libmtranslate${soversion}")
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "mtranslate authors <authors@mtranslate.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library library-doc development development-doc)
if(MTRANSLATE_TOOL)
    list(APPEND CPACK_COMPONENTS_ALL tool zsh-debian tool-doc)
endif()
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME mtranslate)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION math)
set(CPACK_DEBIAN_TOOL_DESCRIPTION "translates MATLAB source for a host computer-algebra system")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME "${library_package}")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "translator of MATLAB source, a library for hosts")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libmtranslate-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "header and stand-in host of ${library_package}")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library_package} (= ${PROJECT_VERSION})")

set(CPACK_POST_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/LdconfigTrigger.cmake")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# What Debian's packages have in their own form: licence, changes, the manual page.
set(debian_pages "${PROJECT_BINARY_DIR}/debian")
# mtranslate_gzip(SOURCE NAME): compresses a file, with the same bytes each time.
function(mtranslate_gzip source name)
    execute_process(COMMAND "${GZIP}" -9nc "${source}" OUTPUT_FILE "${debian_pages}/${name}"
        COMMAND_ERROR_IS_FATAL ANY)
endfunction()
configure_file(cmake/debian-changelog.in "${debian_pages}/changelog" @ONLY)
configure_file(cmake/debian-copyright "${debian_pages}/copyright" COPYONLY)
mtranslate_gzip("${debian_pages}/changelog" changelog.gz)
foreach(pair tool:mtranslate library:${library_package} development:libmtranslate-dev)
    string(REPLACE ":" ";" pair "${pair}")
    list(GET pair 0 component)
    list(GET pair 1 package)
    install(FILES "${debian_pages}/copyright" "${debian_pages}/changelog.gz"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${package}"
        COMPONENT ${component}-doc EXCLUDE_FROM_ALL)
endforeach()

include(CPack)
foreach(component tool zsh-debian tool-doc)
    cpack_add_component(${component} GROUP tool)
endforeach()
foreach(component library development)
    cpack_add_component(${component} GROUP ${component})
    cpack_add_component(${component}-doc GROUP ${component})
endforeach()
