# Manual pages, completion and the rules of a Debian package.

set(KV_DOC_SOURCE ${CMAKE_INSTALL_FULL_DATADIR}/doc/kv-akum)
set(KV_EXAMPLE_SOURCE ${KV_DOC_SOURCE}/examples)
if(KV_BOOKS)
  set(KV_BOOK_FORM html)
else()
  set(KV_BOOK_FORM md)
endif()
find_program(GZIP gzip REQUIRED)

# Without the time of the build, so that two builds give the same bytes.
function(kv_compress from to)
  add_custom_command(OUTPUT ${to} DEPENDS ${from}
    COMMAND ${GZIP} --best --no-name --stdout ${from} > ${to} VERBATIM)
  set_property(GLOBAL APPEND PROPERTY KV_COMPRESSED ${to})
endfunction()

set(pages KV_Akum)
if(KV_SCHAU)
  list(APPEND pages KV_Schau)
endif()
foreach(language IN ITEMS de en)
  set(folder ${CMAKE_INSTALL_MANDIR}/${language}/man1)
  if(language STREQUAL en)
    set(folder ${CMAKE_INSTALL_MANDIR}/man1)
  endif()
  foreach(page IN LISTS pages)
    configure_file(man/${language}/${page}.1.in man/${language}/${page}.1 @ONLY)
    kv_compress(${CMAKE_CURRENT_BINARY_DIR}/man/${language}/${page}.1
      ${CMAKE_CURRENT_BINARY_DIR}/man/${language}/${page}.1.gz)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/man/${language}/${page}.1.gz DESTINATION ${folder} COMPONENT programs)
  endforeach()
endforeach()

set(KV_MAINTAINER "KARVOS maintainers <maintainers@karvos.example>")
execute_process(COMMAND env LC_ALL=C date --utc --rfc-email --date ${KV_RELEASE_DATE}
  OUTPUT_VARIABLE KV_RELEASE_TIME OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
configure_file(changelog.in changelog @ONLY)
kv_compress(${CMAKE_CURRENT_BINARY_DIR}/changelog ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz)
install(FILES copyright ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz ${PROJECT_SOURCE_DIR}/CHANGELOG.md
  DESTINATION ${documents} COMPONENT programs)
install(FILES lintian-overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME kv-akum
  COMPONENT programs)
if(KV_SCHAU)
  install(FILES completion.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME KV_Schau
    COMPONENT programs)
endif()

get_property(compressed GLOBAL PROPERTY KV_COMPRESSED)
add_custom_target(compressed_files ALL DEPENDS ${compressed})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kv-akum)
set(CPACK_PACKAGE_CONTACT ${KV_MAINTAINER})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_CMAKE_PROJECTS "${CMAKE_BINARY_DIR};KV_Akum;programs;/")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Plans as PNG or PDF.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS librsvg2-bin)
# The first line is the project's own description.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"KV_Akum reads one variant of a river-basin model from fixed-column files,
checks its network of areas, reaches, branchings and basins and sums for
every reach the natural, canalised and impervious area that drains into it.

KV_Schau checks such variants, runs KV_Akum on them and shows the outcome.
Messages and handbook are German.")
