# Run by cpack on the packages that it has made. Its own scripts call ldconfig; Debian's packages ask
# for it by a trigger.

foreach(package IN LISTS CPACK_PACKAGE_FILES)
    if(NOT package MATCHES "/libmtranslate[0-9][^/]*\\.deb$")
        continue()
    endif()
    set(tree "${package}.tree")
    file(REMOVE_RECURSE "${tree}")
    execute_process(COMMAND dpkg-deb -R "${package}" "${tree}" COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE "${tree}/DEBIAN/postinst" "${tree}/DEBIAN/postrm")
    file(WRITE "${tree}/DEBIAN/triggers" "activate-noawait ldconfig\n")
    execute_process(COMMAND dpkg-deb --root-owner-group -b "${tree}" "${package}"
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE_RECURSE "${tree}")
endforeach()
