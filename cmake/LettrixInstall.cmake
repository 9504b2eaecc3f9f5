# What `cmake --install` puts in place: the shared libraries, the public headers, a CMake package
# (find_package(Lettrix) gives Lettrix::lettrix, and Lettrix::lettrix_text where the text library is
# built) and a pkg-config file for each library. The package files locate the installation from where
# they lie, so any --prefix given at install time works.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(LETTRIX_INSTALLED_TARGETS lettrix)
if(TARGET lettrix_text)
  list(APPEND LETTRIX_INSTALLED_TARGETS lettrix_text)
endif()
install(TARGETS ${LETTRIX_INSTALLED_TARGETS} EXPORT LettrixTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ${CMAKE_SOURCE_DIR}/include/lettrix DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h" PATTERN "lettrix_text.h" EXCLUDE)
if(TARGET lettrix_text)
  install(FILES ${CMAKE_SOURCE_DIR}/include/lettrix/lettrix_text.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/lettrix)
endif()
if(WIN32)
  # For toolchains that make their own import library from the export list.
  install(FILES ${CMAKE_BINARY_DIR}/bin/lettrix.def DESTINATION ${CMAKE_INSTALL_LIBDIR})
endif()

set(LETTRIX_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Lettrix)
install(EXPORT LettrixTargets NAMESPACE Lettrix:: FILE LettrixTargets.cmake DESTINATION ${LETTRIX_CMAKE_DIR})
configure_package_config_file(${CMAKE_SOURCE_DIR}/cmake/LettrixConfig.cmake.in
  ${CMAKE_BINARY_DIR}/package/LettrixConfig.cmake INSTALL_DESTINATION ${LETTRIX_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/package/LettrixConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/package/LettrixConfig.cmake ${CMAKE_BINARY_DIR}/package/LettrixConfigVersion.cmake
  DESTINATION ${LETTRIX_CMAKE_DIR})

# pkg-config: the prefix is found relative to the .pc file itself.
file(RELATIVE_PATH LETTRIX_PC_TO_PREFIX "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
configure_file(${CMAKE_SOURCE_DIR}/cmake/lettrix.pc.in ${CMAKE_BINARY_DIR}/package/lettrix.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/package/lettrix.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
if(TARGET lettrix_text)
  configure_file(${CMAKE_SOURCE_DIR}/cmake/lettrix_text.pc.in ${CMAKE_BINARY_DIR}/package/lettrix_text.pc @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/package/lettrix_text.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endif()
