# What an installation holds: the libraries, their headers, what CMake and pkg-config need to find them, and kivtree.
# Everything is found relative to where it lies, so that an installation can be moved.

include(CMakePackageConfigHelpers)

foreach(part Platform Generics Storage)
  # The libraries find each other in the folder they lie in.
  set_target_properties(Kiv${part} PROPERTIES EXPORT_NAME ${part} INSTALL_RPATH "$ORIGIN")
  install(DIRECTORY ${part}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
endforeach()
install(TARGETS KivPlatform KivGenerics KivStorage EXPORT KivGenericsTargets)
if(TARGET KivInspect)
  set_target_properties(KivInspect PROPERTIES EXPORT_NAME Inspect)
  install(DIRECTORY Inspect/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
  install(TARGETS KivInspect EXPORT KivGenericsTargets)
endif()
if(TARGET kivtree)
  # The tool finds its libraries from the folder it lies in.
  file(RELATIVE_PATH librariesFromTools /prefix/${CMAKE_INSTALL_BINDIR} /prefix/${CMAKE_INSTALL_LIBDIR})
  set_target_properties(kivtree PROPERTIES INSTALL_RPATH "$ORIGIN/${librariesFromTools}")
  install(TARGETS kivtree)
  install(FILES Docs/kivtree.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES Tools/completions/kivtree DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  install(FILES Tools/completions/_kivtree DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
  install(FILES Tools/completions/kivtree.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
endif()

set(packageFolder ${CMAKE_INSTALL_LIBDIR}/cmake/KivGenerics)
install(EXPORT KivGenericsTargets NAMESPACE Kiv:: DESTINATION ${packageFolder})
configure_package_config_file(cmake/KivGenericsConfig.cmake.in ${CMAKE_BINARY_DIR}/KivGenericsConfig.cmake
  INSTALL_DESTINATION ${packageFolder})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/KivGenericsConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/KivGenericsConfig.cmake ${CMAKE_BINARY_DIR}/KivGenericsConfigVersion.cmake
  DESTINATION ${packageFolder})

# Library folders lie one to three levels below the prefix. The destination stays relative: the prefix may be given when
# installing.
set(pkgConfigFolder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH prefixFromPkgConfig /prefix/${pkgConfigFolder} /prefix)
foreach(package KivGenerics KivStorage)
  configure_file(cmake/${package}.pc.in ${CMAKE_BINARY_DIR}/${package}.pc @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/${package}.pc DESTINATION ${pkgConfigFolder})
endforeach()
