# Targets of the tree. Headers are included from the root ("core/clock_time.h"),
# yet a folder sees only the folders that it links: each target publishes a
# directory that holds nothing but a link to its own folder.

include(EdlWarnings)

# edl_publish_folder(<target> <folder>): makes "<folder>/…" includable for
# <target> and for whatever links it.
function(edl_publish_folder target folder)
  set(root ${CMAKE_BINARY_DIR}/include/${target})
  file(MAKE_DIRECTORY ${root})
  get_filename_component(parent ${root}/${folder} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  if(NOT EXISTS ${root}/${folder})
    file(CREATE_LINK ${CMAKE_SOURCE_DIR}/${folder} ${root}/${folder} SYMBOLIC)
  endif()
  target_include_directories(${target} PUBLIC ${root})
endfunction()

# edl_add_folder_library(<target> FOLDER <folder> SOURCES … [LINKS …])
function(edl_add_folder_library target)
  cmake_parse_arguments(ARG "" "FOLDER" "SOURCES;LINKS" ${ARGN})
  add_library(${target} STATIC ${ARG_SOURCES})
  edl_publish_folder(${target} ${ARG_FOLDER})
  target_link_libraries(${target} PUBLIC ${ARG_LINKS})
  edl_set_warnings(${target})
endfunction()

# edl_add_test(<name> SOURCES … LINKS …): one GoogleTest program. Each of its
# cases becomes a ctest test of its own, "<name>.<suite>.<case>".
function(edl_add_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE ${ARG_LINKS} GTest::gmock GTest::gtest_main)
  edl_set_warnings(${name})
  gtest_discover_tests(${name} TEST_PREFIX "${name}." DISCOVERY_TIMEOUT 60
                       PROPERTIES TIMEOUT 300)
endfunction()

# edl_add_fuzz_target(<name> SOURCES … LINKS … [SEEDS <folder>] [DICTIONARY <file>])
# Under EDL_FUZZ a libFuzzer program; otherwise the same function with a plain
# main that replays the seeds, so that ctest covers them in every build.
# Seeds default to fuzz/seeds/<name>, the dictionary to fuzz/dictionaries/<name>.dict.
function(edl_add_fuzz_target name)
  cmake_parse_arguments(ARG "" "SEEDS;DICTIONARY" "SOURCES;LINKS" ${ARGN})
  if(NOT ARG_SEEDS)
    set(ARG_SEEDS ${CMAKE_SOURCE_DIR}/fuzz/seeds/${name})
  endif()
  add_executable(fuzz_${name} ${ARG_SOURCES})
  target_include_directories(fuzz_${name} PRIVATE ${CMAKE_SOURCE_DIR})
  target_link_libraries(fuzz_${name} PRIVATE ${ARG_LINKS})
  edl_set_warnings(fuzz_${name})
  if(EDL_FUZZ)
    target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
  else()
    target_sources(fuzz_${name} PRIVATE ${CMAKE_SOURCE_DIR}/fuzz/replay_main.cpp)
    add_test(NAME fuzz_seeds.${name} COMMAND fuzz_${name} ${ARG_SEEDS})
  endif()
endfunction()
