include(CMakePackageConfigHelpers)

set(QUILLBANK_INSTALLED_TARGETS quillbank)
set(QUILLBANK_HAS_JSON OFF)
if(TARGET quillbank_json)
  list(APPEND QUILLBANK_INSTALLED_TARGETS quillbank_json)
  set(QUILLBANK_HAS_JSON ON)
endif()
install(TARGETS ${QUILLBANK_INSTALLED_TARGETS} EXPORT QuillbankTargets
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
# A static library's users link what it uses besides pugixml and ICU.
set(QUILLBANK_PC_LIBS_PRIVATE "")
foreach(lib ${CMAKE_DL_LIBS})
  string(APPEND QUILLBANK_PC_LIBS_PRIVATE " -l${lib}")
endforeach()
string(STRIP "${QUILLBANK_PC_LIBS_PRIVATE}" QUILLBANK_PC_LIBS_PRIVATE)
configure_file(cmake/quillbank.pc.in ${CMAKE_CURRENT_BINARY_DIR}/quillbank.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/quillbank.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
if(QUILLBANK_HAS_JSON)
  configure_file(cmake/quillbank-json.pc.in ${CMAKE_CURRENT_BINARY_DIR}/quillbank-json.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/quillbank-json.pc
          DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endif()
