# The tests of an executable, each by itself, as ctest sees them.

include(GoogleTest)

# discover_tests(target [arguments of gtest_discover_tests])
#
# Suites of a source that starts threads get the label "threads": the thread sanitizer has something to
# look at there alone, and runs them in CI. The label is read from the sources, so that a new test with
# threads cannot be forgotten; whole suites get it, because a fixture may start the threads.
function(discover_tests target)
  set(suites "")
  get_target_property(sources ${target} SOURCES)
  get_target_property(folder ${target} SOURCE_DIR)
  foreach(source IN LISTS sources)
    cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY "${folder}")
    file(STRINGS "${source}" starts REGEX "std::(jthread|thread|async)[ >(]")
    if(starts)
      set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${source}")
      file(STRINGS "${source}" tests REGEX "^TEST(_F|_P)?\\(")
      list(TRANSFORM tests REPLACE "^TEST[_FP]*\\(([A-Za-z0-9_]+),.*" "\\1.*:*/\\1.*")
      list(APPEND suites ${tests})
    endif()
  endforeach()
  if(NOT suites)
    gtest_discover_tests(${target} ${ARGN})
    return()
  endif()
  list(REMOVE_DUPLICATES suites)
  list(JOIN suites ":" filter)
  gtest_discover_tests(${target} ${ARGN} TEST_FILTER "-${filter}" TEST_LIST ${target}_others)
  gtest_discover_tests(${target} ${ARGN} TEST_FILTER "${filter}" TEST_LIST ${target}_threads
                       PROPERTIES LABELS threads)
endfunction()
