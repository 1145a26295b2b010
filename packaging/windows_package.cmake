# A zip that is unpacked anywhere, with one folder in it.

install(FILES ${PROJECT_SOURCE_DIR}/CHANGELOG.md DESTINATION ${documents} COMPONENT programs)
install(FILES copyright DESTINATION ${documents} RENAME Lizenzen.txt COMPONENT programs)

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_NAME KV_Akum)
set(CPACK_PACKAGE_FILE_NAME KV_Akum-${PROJECT_VERSION}-win64)
set(CPACK_INSTALL_CMAKE_PROJECTS "${CMAKE_BINARY_DIR};KV_Akum;programs;/")
set(CPACK_STRIP_FILES ON)
