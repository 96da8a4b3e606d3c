# CPack gives a package with libraries scripts that call ldconfig. The trigger in the package does
# that, once for all packages, and nothing of ours then runs as root.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
  set(unpacked ${CPACK_TEMPORARY_DIRECTORY}/unpacked)
  foreach(step IN ITEMS "dpkg-deb;--raw-extract;${package};${unpacked}"
                        "rm;-f;${unpacked}/DEBIAN/postinst;${unpacked}/DEBIAN/postrm"
                        "dpkg-deb;--root-owner-group;--build;${unpacked};${package}"
                        "rm;-r;${unpacked}")
    execute_process(COMMAND ${step} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  endforeach()
endforeach()
