# What is installed, by component: the tool with its manual page and completions, the library, and
# what programs are built with: header, stand-in host, CMake package and pkg-config files.

include(CMakePackageConfigHelpers)

install(FILES
    "${PROJECT_SOURCE_DIR}/include/mtranslate.h"
    "${PROJECT_SOURCE_DIR}/include/mtranslate_program.h"
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT development)
install(TARGETS mtranslate EXPORT mtranslate-targets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
        COMPONENT library NAMELINK_COMPONENT development
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development
    INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")

if(MTRANSLATE_TOOL)
    set(pages "${PROJECT_BINARY_DIR}/pages")
    install(TARGETS mtranslate_tool
        RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT tool)
    install(FILES "${pages}/mtranslate.1.gz"
        DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT tool)
    install(FILES "${pages}/mtranslate.bash" RENAME mtranslate
        DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT tool)
    install(FILES "${pages}/mtranslate.fish"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d" COMPONENT tool)
    # Debian's zsh looks elsewhere for what its packages bring.
    install(FILES "${pages}/_mtranslate"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions" COMPONENT zsh)
    install(FILES "${pages}/_mtranslate"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions"
        COMPONENT zsh-debian EXCLUDE_FROM_ALL)

    # What the tool's messages link to, and what its pages name.
    file(GLOB documents docs/*.md docs/*.schema.json docs/*.png README.md CHANGELOG.md)
    install(FILES ${documents} DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT tool)
    install(FILES LICENSE THIRD_PARTY_NOTICES DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT license)
    install(DIRECTORY examples/rules DESTINATION "${CMAKE_INSTALL_DOCDIR}/examples" COMPONENT tool)

    # The host's headers name each other as host/NAME.h.
    install(TARGETS mtranslate_host EXPORT mtranslate-targets
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development
        INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/mtranslate")
    install(FILES host/stand_in_host.h host/value_store.h
        DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/mtranslate/host" COMPONENT development)
endif()

# The library depends on no other package: its exported targets are the whole CMake package.
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/mtranslate")
install(EXPORT mtranslate-targets
    FILE mtranslateConfig.cmake NAMESPACE mtranslate::
    DESTINATION "${package_dir}" COMPONENT development)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/mtranslateConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/mtranslateConfigVersion.cmake"
    DESTINATION "${package_dir}" COMPONENT development)

# The pkg-config files find their prefix from where they lie, so that an installed tree can move.
set(pkgconfig_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH pkgconfig_to_prefix "/prefix/${pkgconfig_dir}" "/prefix")
set(pkgconfig_names mtranslate)
set(pkgconfig_needs "")
if(NOT BUILD_SHARED_LIBS) # an archive brings nothing along
    set(pkgconfig_needs " -lstdc++ -lm")
endif()
if(MTRANSLATE_TOOL)
    list(APPEND pkgconfig_names mtranslate-host)
endif()
foreach(name IN LISTS pkgconfig_names)
    configure_file("cmake/${name}.pc.in" "${PROJECT_BINARY_DIR}/${name}.pc" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/${name}.pc"
        DESTINATION "${pkgconfig_dir}" COMPONENT development)
endforeach()
