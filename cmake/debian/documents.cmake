# What a Debian package holds beside an installed tree: the changes, and manual pages compressed. CPack runs this with
# its own variables when the components are in place.
function(compress FILE TARGET)
  execute_process(COMMAND gzip -9n INPUT_FILE ${FILE} OUTPUT_FILE ${TARGET} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(stage ${CPACK_TEMPORARY_DIRECTORY})
# In Debian's form, of the date of the changes, so that one source gives one package.
set(ENV{LC_ALL} C)
execute_process(COMMAND date -uR -r ${CPACK_ZET_CHANGES} OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE
                COMMAND_ERROR_IS_FATAL ANY)
file(WRITE ${stage}/changelog "${CPACK_PACKAGE_NAME} (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium\n\n\
  * Version ${CPACK_PACKAGE_VERSION}; NEWS.gz tells its changes.\n\n -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")

foreach(component ${CPACK_COMPONENTS_ALL})
  string(TOUPPER ${component} COMPONENT)
  set(documents ${stage}/${component}/usr/share/doc/${CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME})
  file(MAKE_DIRECTORY ${documents})
  compress(${stage}/changelog ${documents}/changelog.gz)
  compress(${CPACK_ZET_CHANGES} ${documents}/NEWS.gz)
  file(GLOB pages ${stage}/${component}/usr/share/man/man?/*.[1-8])
  foreach(page ${pages})
    compress(${page} ${page}.gz)
    file(REMOVE ${page})
  endforeach()
endforeach()
