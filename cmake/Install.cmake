include(CMakePackageConfigHelpers)

install(TARGETS quillbank EXPORT QuillbankTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/quillbank DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT QuillbankTargets NAMESPACE Quillbank::
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Quillbank)

configure_package_config_file(cmake/QuillbankConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/QuillbankConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Quillbank)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/QuillbankConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/QuillbankConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/QuillbankConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Quillbank)

# The pkg-config file finds its prefix relative to its own folder, so the
# installed tree can be moved (or installed with --prefix).
file(RELATIVE_PATH QUILLBANK_PC_TO_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" QUILLBANK_PC_TO_PREFIX "${QUILLBANK_PC_TO_PREFIX}")
configure_file(cmake/quillbank.pc.in ${CMAKE_CURRENT_BINARY_DIR}/quillbank.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/quillbank.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
