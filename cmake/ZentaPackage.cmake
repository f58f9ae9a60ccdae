# The Debian package: `cpack -G DEB` in a build directory (scripts/package
# makes a Release build and runs it). It holds what `cmake --install` puts
# under the prefix, with /usr as the prefix.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zenta-cmpi)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "ZENTA CMPI")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "ZENTA host with the CMPI namespace provider, and a CMPI provider SDK")
set(CPACK_PACKAGE_DESCRIPTION
    "The zenta tool answers CIM requests from CMPI 1.0 provider modules through\n"
    "the CMPI namespace provider libcmpi.nsp.so. The package also holds the CMPI\n"
    "headers, a helper header, pkg-config and CMake files for building provider\n"
    "modules, and the host interfaces for host integrators.")
string(REPLACE ";" "" CPACK_PACKAGE_DESCRIPTION "${CPACK_PACKAGE_DESCRIPTION}")
set(CPACK_PACKAGE_CONTACT "ZENTA CMPI maintainers <zenta-cmpi@localhost>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
# The 32-bit build (cmake/i386-toolchain.cmake) makes an i386 package; the
# default asks dpkg, which names the machine's own architecture.
if(ZENTA_TARGET_BITS EQUAL 32)
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE i386)
endif()
# The run-time dependencies come from the libraries the binaries link; the
# host libraries of the package itself are found in its private directory.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${ZENTA_LIB_DIR})
# Building providers needs a C compiler (and pkg-config or CMake); building
# against the host interfaces needs the Boost headers.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "gcc | c-compiler, pkg-config | pkgconf, cmake, libboost-dev")
include(CPack)
