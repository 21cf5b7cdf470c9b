# Removes from a finished package the scripts that CPack writes for every library: they call ldconfig, which dpkg's
# trigger does. CPack runs this with its own variables when the packages are made.
foreach(package ${CPACK_PACKAGE_FILES})
  if(NOT package MATCHES "/${CPACK_DEBIAN_LIBRARY_PACKAGE_NAME}_")
    continue()
  endif()
  set(tree ${CPACK_TEMPORARY_DIRECTORY}/rebuilt)
  execute_process(COMMAND dpkg-deb --raw-extract ${package} ${tree} COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE ${tree}/DEBIAN/postinst ${tree}/DEBIAN/postrm)
  execute_process(COMMAND dpkg-deb --root-owner-group --build ${tree} ${package} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endforeach()
