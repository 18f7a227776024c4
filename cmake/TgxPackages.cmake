# The Debian packages that cpack makes: tgx (command and libraries) and libtgx-dev (what programs need to build with them).
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tgx)
set(CPACK_PACKAGE_VENDOR tgx)
set(TGX_PACKAGE_CONTACT "Whoever built this <root@localhost>" CACHE STRING "Name and address of who makes the packages")
set(CPACK_PACKAGE_CONTACT "${TGX_PACKAGE_CONTACT}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL tgx development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)

set(CPACK_DEBIAN_TGX_PACKAGE_NAME tgx)
set(CPACK_DEBIAN_TGX_PACKAGE_SECTION text)
set(CPACK_COMPONENT_TGX_DESCRIPTION
"command and libraries that repair tagged PDF documents
 Reads the private marks that a page-layout program leaves in a tagged PDF
 document and rewrites its structure into plain tagged PDF.")
set(CPACK_DEBIAN_TGX_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/lib)
# Where the CMap resources come from.
set(CPACK_DEBIAN_TGX_PACKAGE_DEPENDS poppler-data)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
# A program needs a tgx that still has the libraries under the names with which it was built. CPack puts the version behind what
# stands here and parentheses around both.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY "<< ${TGX_NEXT_INTERFACE_VERSION}~), tgx (>=")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libtgx-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
"headers of the libraries of tgx
 What programs need that use libtgx and its embedded host.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "tgx (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)

# Debian wants the licence of each package in its own documents.
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tgx COMPONENT tgx RENAME copyright)
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libtgx-dev COMPONENT development RENAME copyright)
install(FILES CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tgx COMPONENT tgx)
# README.md is for those who have the sources; docs/README.md leads through the pages.
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tgx COMPONENT tgx)
include(CPack)
