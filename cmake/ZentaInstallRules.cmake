# What `cmake --install` puts under the prefix, besides the tools and the
# bundled provider modules (installed where they are defined, through
# zenta_install_tool and zenta_provider_module). Layout: ZentaInstall.cmake.

# Host libraries, with the standard documents the core library reads from
# "documents" beside itself (whatever host/core placed there).
zenta_install_library(zentacore inmem cmpi)
install(DIRECTORY ${ZENTA_LIB_DIR}/documents DESTINATION ${ZENTA_INSTALL_LIBDIR})

# For provider writers: the CMPI headers and the helper header; for host
# integrators: the host interfaces, under their own directory.
install(DIRECTORY include/cmpi/ DESTINATION ${ZENTA_INSTALL_INCLUDEDIR}/cmpi FILES_MATCHING PATTERN "*.h")
install(FILES providers/common/zentaProvider.h DESTINATION ${ZENTA_INSTALL_INCLUDEDIR}/zenta)
install(DIRECTORY include/host/ DESTINATION ${ZENTA_INSTALL_INCLUDEDIR}/zenta/host FILES_MATCHING PATTERN "*.h")

# pkg-config: zenta-cmpi.pc.
file(RELATIVE_PATH ZENTA_PC_TO_PREFIX /prefix/${ZENTA_INSTALL_PKGCONFIGDIR} /prefix)
string(REGEX REPLACE "/$" "" ZENTA_PC_TO_PREFIX "${ZENTA_PC_TO_PREFIX}")
configure_file(cmake/zenta-cmpi.pc.in ${CMAKE_BINARY_DIR}/generated/zenta-cmpi.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/generated/zenta-cmpi.pc DESTINATION ${ZENTA_INSTALL_PKGCONFIGDIR})

# CMake: find_package(ZentaCMPI).
include(CMakePackageConfigHelpers)
configure_package_config_file(cmake/ZentaCMPIConfig.cmake.in ${CMAKE_BINARY_DIR}/generated/ZentaCMPIConfig.cmake
  INSTALL_DESTINATION ${ZENTA_INSTALL_CMAKEDIR}
  PATH_VARS ZENTA_INSTALL_INCLUDEDIR ZENTA_INSTALL_LIBDIR ZENTA_INSTALL_BINDIR)
# Before 1.0 a minor version may change the interface.
write_basic_package_version_file(${CMAKE_BINARY_DIR}/generated/ZentaCMPIConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/generated/ZentaCMPIConfig.cmake
              ${CMAKE_BINARY_DIR}/generated/ZentaCMPIConfigVersion.cmake
              cmake/ZentaProvider.cmake
        DESTINATION ${ZENTA_INSTALL_CMAKEDIR})

# Documentation, and the man page of zenta made from its own --help.
install(FILES README.md DESTINATION ${ZENTA_INSTALL_DOCDIR})
install(DIRECTORY docs/ DESTINATION ${ZENTA_INSTALL_DOCDIR} FILES_MATCHING PATTERN "*.md")
if(TARGET zenta)
  find_program(HELP2MAN help2man REQUIRED)
  set(ZENTA_MAN_PAGE ${CMAKE_BINARY_DIR}/share/man/man1/zenta.1)
  add_custom_command(OUTPUT ${ZENTA_MAN_PAGE}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/share/man/man1
    COMMAND ${HELP2MAN} --no-info
            --name "ask the CMPI providers of a ZENTA host"
            --include ${PROJECT_SOURCE_DIR}/cmake/zenta.h2m
            --output ${ZENTA_MAN_PAGE} $<TARGET_FILE:zenta>
    DEPENDS zenta ${PROJECT_SOURCE_DIR}/cmake/zenta.h2m
    COMMENT "Writing the zenta man page from zenta --help"
    VERBATIM)
  add_custom_target(zenta_man_page ALL DEPENDS ${ZENTA_MAN_PAGE})
  install(FILES ${ZENTA_MAN_PAGE} DESTINATION ${ZENTA_INSTALL_MANDIR}/man1)
endif()
