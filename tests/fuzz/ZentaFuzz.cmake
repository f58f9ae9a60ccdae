# Fuzz targets. A target is a source file that defines
#   extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
# with its seed corpus in tests/fuzz/<name>/corpus and, optionally, a
# libFuzzer dictionary tests/fuzz/<name>/<name>.dict.
#
#   zenta_fuzz_target(<name> SOURCES <files...> LIBRARIES <targets...>)
#
# With ZENTA_FUZZ=ON (a clang build, see scripts/fuzz) it makes the
# libFuzzer program fuzz_<name>. Otherwise it makes replay_<name>, the same
# target with a main() that runs every file of the corpus through it once,
# registered with CTest as FuzzReplay.<name>: in the sanitizer flavour the
# corpus, crashers included, replays under ASan and UBSan.
set(ZENTA_FUZZ_DIR ${CMAKE_CURRENT_LIST_DIR})

function(zenta_fuzz_target name)
  cmake_parse_arguments(FUZZ "" "" "SOURCES;LIBRARIES" ${ARGN})
  set(corpus ${ZENTA_FUZZ_DIR}/${name}/corpus)
  if(ZENTA_FUZZ)
    set(program fuzz_${name})
    add_executable(${program} ${FUZZ_SOURCES})
    target_link_options(${program} PRIVATE -fsanitize=fuzzer)
  else()
    set(program replay_${name})
    add_executable(${program} ${FUZZ_SOURCES} ${ZENTA_FUZZ_DIR}/ReplayMain.cpp)
    if(ZENTA_BUILD_TESTS)
      add_test(NAME FuzzReplay.${name} COMMAND ${program} ${corpus})
    endif()
  endif()
  target_link_libraries(${program} PRIVATE ${FUZZ_LIBRARIES})
  target_include_directories(${program} PRIVATE ${ZENTA_FUZZ_DIR})
  zenta_strict(${program})
endfunction()
