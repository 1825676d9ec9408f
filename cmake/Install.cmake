# Library, header, tool with its manual page and completions, CMake package and pkg-config file.

include(CMakePackageConfigHelpers)

install(TARGETS mtranslate EXPORT mtranslate-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES "${PROJECT_SOURCE_DIR}/include/mtranslate.h"
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(MTRANSLATE_TOOL)
    install(TARGETS mtranslate_tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
    set(pages "${PROJECT_BINARY_DIR}/pages")
    install(FILES "${pages}/mtranslate.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
    install(FILES "${pages}/mtranslate.bash" RENAME mtranslate
        DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions")
    install(FILES "${pages}/_mtranslate"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions")
    install(FILES "${pages}/mtranslate.fish"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d")
endif()

# The library depends on no other package: its exported targets are the whole CMake package.
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/mtranslate")
install(EXPORT mtranslate-targets
    FILE mtranslateConfig.cmake NAMESPACE mtranslate:: DESTINATION "${package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/mtranslateConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/mtranslateConfigVersion.cmake" DESTINATION "${package_dir}")

# The pkg-config file finds its prefix from where it lies, so that an installed tree can move.
set(pkgconfig_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH pkgconfig_to_prefix "/prefix/${pkgconfig_dir}" "/prefix")
configure_file(cmake/mtranslate.pc.in "${PROJECT_BINARY_DIR}/mtranslate.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/mtranslate.pc" DESTINATION "${pkgconfig_dir}")
