# Compiler settings of every target, in one interface library.
add_library(talix_options INTERFACE)
target_compile_options(
  talix_options
  INTERFACE -Wall -Wextra -Wpedantic -Werror -ffp-contract=off
            $<$<COMPILE_LANGUAGE:CXX>:-Wshadow -Wconversion -Wno-sign-conversion -Wdouble-promotion -Wfloat-conversion>)
# GCC 12 warns of overlapping copies in the string concatenation of its own library, wrongly (GCC bug 105651).
# Its straight-line vectoriser drops conversions of a double to 32 bits and back, which changes results:
# tests/base/rounding_test.cpp holds a case.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(talix_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict> -fno-tree-slp-vectorize)
endif()
# Bounds of the fixed arrays are checked in every build but release.
target_compile_definitions(talix_options INTERFACE $<$<NOT:$<CONFIG:Release>>:TALIX_CHECK_BOUNDS>)
if(TALIX_SANITIZE)
  # Little optimisation: the sanitized suite takes longer to compile than to run.
  target_compile_options(talix_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                                 -fno-omit-frame-pointer -O1 -g1)
  # GCC 12 warns of its own regular expressions once they are instrumented, wrongly (GCC bug 105562).
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(talix_options INTERFACE -Wno-maybe-uninitialized)
  endif()
  target_link_options(talix_options INTERFACE -fsanitize=address,undefined)
endif()
# The search for inputs follows which branches an input takes, in every file of the library.
if(TALIX_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "TALIX_FUZZ needs clang: its fuzzing library drives the search")
  endif()
  target_compile_options(talix_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
                                                 -fno-omit-frame-pointer -O2 -g1)
  target_link_options(talix_options INTERFACE -fsanitize=address,undefined)
endif()
