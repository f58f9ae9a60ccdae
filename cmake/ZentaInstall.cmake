# Where `cmake --install BUILD --prefix P` puts things, relative to P. The
# libraries, the standard documents and the bundled provider modules share
# one private directory, as they share build/lib in the build tree: the
# CMPI library serves the modules beside itself and the core library reads
# the standard documents from "documents" beside itself. Nothing installed
# names P: the tools and libraries find each other through $ORIGIN, and the
# package files compute P from where they lie, so an installed tree may be
# moved as a whole.
set(ZENTA_INSTALL_BINDIR bin)
set(ZENTA_INSTALL_LIBDIR lib/zenta)
set(ZENTA_INSTALL_INCLUDEDIR include)
set(ZENTA_INSTALL_PKGCONFIGDIR lib/pkgconfig)
set(ZENTA_INSTALL_CMAKEDIR lib/cmake/ZentaCMPI)
set(ZENTA_INSTALL_DOCDIR share/doc/zenta)
set(ZENTA_INSTALL_MANDIR share/man)

# The library directory as seen from the tools' directory ("../lib/zenta").
file(RELATIVE_PATH ZENTA_TOOL_TO_LIBDIR /prefix/${ZENTA_INSTALL_BINDIR} /prefix/${ZENTA_INSTALL_LIBDIR})

# zenta_install_tool(target): installs a host program into bin/. Its
# RUNPATH leads to the installed libraries, where the dynamic loader then
# finds libzentacore.so; the program takes that library's directory as the
# one holding the namespace providers and the bundled modules.
function(zenta_install_tool target)
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${ZENTA_TOOL_TO_LIBDIR}")
  install(TARGETS ${target} RUNTIME DESTINATION ${ZENTA_INSTALL_BINDIR})
endfunction()

# zenta_add_tool(target SOURCES src... LIBRARIES lib...): a host program with
# a command line (CLI11), built into bin/ beside lib/ and installed.
function(zenta_add_tool target)
  cmake_parse_arguments(TOOL "" "" "SOURCES;LIBRARIES" ${ARGN})
  find_package(CLI11 REQUIRED)
  add_executable(${target} ${TOOL_SOURCES})
  set_target_properties(${target} PROPERTIES BUILD_RPATH "$ORIGIN/../lib")
  target_link_libraries(${target} PRIVATE ${TOOL_LIBRARIES} zenta_version CLI11::CLI11)
  zenta_install_tool(${target})
  zenta_strict(${target})
  # Running a tool needs the CMPI library and the bundled modules in place.
  if(TARGET cmpi)
    add_dependencies(${target} cmpi)
  endif()
endfunction()

# zenta_install_library(target...): installs host libraries beside each
# other; each finds the others through $ORIGIN.
function(zenta_install_library)
  set_target_properties(${ARGN} PROPERTIES INSTALL_RPATH "$ORIGIN")
  install(TARGETS ${ARGN} LIBRARY DESTINATION ${ZENTA_INSTALL_LIBDIR})
endfunction()
