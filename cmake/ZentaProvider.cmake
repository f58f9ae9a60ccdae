# zenta_add_provider(NAME SOURCES src... DOCUMENTS doc... [OUTPUT_DIRECTORY dir])
#
# Builds the CMPI provider module NAME.cmpi.so from the C (or C++) SOURCES
# and puts the DOCUMENTS (NAME.reg.mof and NAME.classes.mof, or their .xml
# forms) beside it, because the ZENTA CMPI library finds a module's
# documents by those names in the module's own directory. The module lands
# in OUTPUT_DIRECTORY, else CMAKE_LIBRARY_OUTPUT_DIRECTORY, else the current
# binary directory, so that `zenta --providers <that directory>` serves it
# as soon as it is built.
#
# The documents are the target's RESOURCE files, so one install() takes
# both to where the installed zenta looks (ZentaCMPI_PROVIDER_DIR):
#   install(TARGETS NAME LIBRARY DESTINATION dir RESOURCE DESTINATION dir)
#
# This file is shared by the source tree (the bundled providers) and the
# installed ZentaCMPI package; both define the target ZentaCMPI::cmpi (the
# CMPI headers and the provider helper header) before including it.
include_guard(GLOBAL)

function(zenta_add_provider name)
  cmake_parse_arguments(PARSE_ARGV 1 PROVIDER "" "OUTPUT_DIRECTORY" "SOURCES;DOCUMENTS")
  if(PROVIDER_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "zenta_add_provider(${name}): unexpected arguments: ${PROVIDER_UNPARSED_ARGUMENTS}")
  endif()
  if(NOT PROVIDER_SOURCES)
    message(FATAL_ERROR "zenta_add_provider(${name}): SOURCES names no source file")
  endif()
  _zenta_provider_documents(${name} documents ${PROVIDER_DOCUMENTS})

  set(directory ${PROVIDER_OUTPUT_DIRECTORY})
  if(NOT directory)
    set(directory ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
  endif()
  if(NOT directory)
    set(directory ${CMAKE_CURRENT_BINARY_DIR})
  endif()

  add_library(${name} MODULE ${PROVIDER_SOURCES})
  set_target_properties(${name} PROPERTIES
    PREFIX "" OUTPUT_NAME "${name}.cmpi" SUFFIX ".so"
    LIBRARY_OUTPUT_DIRECTORY ${directory}
    POSITION_INDEPENDENT_CODE ON
    RESOURCE "${documents}")
  target_link_libraries(${name} PRIVATE ZentaCMPI::cmpi)
  # Host exceptions may travel through provider frames; a provider must not
  # leave a symbol for the host to resolve, since the host resolves none.
  target_compile_options(${name} PRIVATE -fexceptions)
  target_link_options(${name} PRIVATE -Wl,--no-undefined)

  # Copied at configure time: CMake configures again when a document
  # changes, so the copy beside the module never goes stale. A copy in the
  # other format, left by an earlier configuration, goes: the library
  # refuses a module with documents in both.
  foreach(document ${documents})
    get_filename_component(document_name ${document} NAME)
    get_filename_component(document_directory ${document} DIRECTORY)
    configure_file(${document} ${directory}/${document_name} COPYONLY)
    get_filename_component(stem ${document} NAME_WLE)
    get_filename_component(format ${document} LAST_EXT)
    set(other_format .mof)
    if(format STREQUAL ".mof")
      set(other_format .xml)
    endif()
    if(NOT document_directory STREQUAL directory)
      file(REMOVE ${directory}/${stem}${other_format})
    endif()
  endforeach()
endfunction()

# The absolute paths of a module's documents, refused unless each is named
# NAME.reg.EXT or NAME.classes.EXT (EXT: mof or xml), each kind at most
# once: the library would not find any other name. Either may be left out
# (a module without a registration document is one provider serving the
# classes of its class document).
function(_zenta_provider_documents name result)
  set(paths)
  set(kinds)
  foreach(document ${ARGN})
    get_filename_component(path ${document} ABSOLUTE BASE_DIR ${CMAKE_CURRENT_SOURCE_DIR})
    get_filename_component(document_name ${path} NAME)
    string(REGEX MATCH "^(.+)\\.(reg|classes)\\.(mof|xml)$" matched "${document_name}")
    if(NOT matched OR NOT CMAKE_MATCH_1 STREQUAL name)
      message(FATAL_ERROR "zenta_add_provider(${name}): document ${document} must be named "
                          "${name}.reg.mof or ${name}.classes.mof (or .xml): the library finds a "
                          "module's documents by these names")
    endif()
    if(CMAKE_MATCH_2 IN_LIST kinds)
      message(FATAL_ERROR "zenta_add_provider(${name}): more than one ${name}.${CMAKE_MATCH_2} document")
    endif()
    if(NOT EXISTS ${path})
      message(FATAL_ERROR "zenta_add_provider(${name}): document ${path} does not exist")
    endif()
    list(APPEND kinds ${CMAKE_MATCH_2})
    list(APPEND paths ${path})
  endforeach()
  set(${result} ${paths} PARENT_SCOPE)
endfunction()
