# Installs the libraries and what programs need to build with them: headers, a CMake package (find_package(tgx) gives tgx::tgx
# and tgx::tgxhost) and a pkg-config file a library.
include(CMakePackageConfigHelpers)

# The version of what programs that are built with the libraries rely on, which is in the names by which they load them, and the
# one at which that ends. Before 1.0 the interface may change with each minor version.
if(PROJECT_VERSION_MAJOR EQUAL 0)
  math(EXPR next_minor "${PROJECT_VERSION_MINOR} + 1")
  set(TGX_INTERFACE_VERSION 0.${PROJECT_VERSION_MINOR})
  set(TGX_NEXT_INTERFACE_VERSION 0.${next_minor})
  set(TGX_COMPATIBILITY SameMinorVersion)
else()
  math(EXPR next_major "${PROJECT_VERSION_MAJOR} + 1")
  set(TGX_INTERFACE_VERSION ${PROJECT_VERSION_MAJOR})
  set(TGX_NEXT_INTERFACE_VERSION ${next_major})
  set(TGX_COMPATIBILITY SameMajorVersion)
endif()

set(TGX_PACKAGE_FOLDER ${CMAKE_INSTALL_LIBDIR}/cmake/tgx)

function(tgx_install_library name)
  set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${TGX_INTERFACE_VERSION})
  install(TARGETS ${name} EXPORT tgxTargets
          LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT tgx NAMELINK_COMPONENT development
          INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endfunction()

# name, what it is
function(tgx_install_pkg_config library description)
  # Relative, so that an installation can be moved.
  set(folder ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
  file(RELATIVE_PATH prefix ${folder} ${CMAKE_INSTALL_PREFIX})
  configure_file(${PROJECT_SOURCE_DIR}/cmake/library.pc.in ${library}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${library}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endfunction()

function(tgx_install_development_files)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/tgx DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
          FILES_MATCHING PATTERN "*.h" PATTERN "*.def")
  install(EXPORT tgxTargets NAMESPACE tgx:: FILE tgxConfig.cmake DESTINATION ${TGX_PACKAGE_FOLDER} COMPONENT development)
  write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/tgxConfigVersion.cmake COMPATIBILITY ${TGX_COMPATIBILITY})
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/tgxConfigVersion.cmake DESTINATION ${TGX_PACKAGE_FOLDER} COMPONENT development)
  tgx_install_pkg_config(tgx "repairs tagged PDF documents that an application has open")
  tgx_install_pkg_config(tgxhost "host of libtgx for programs that have no PDF library")
endfunction()
