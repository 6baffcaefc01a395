# The options that every target is built with. Warnings are errors.
#
# -fno-math-errno lets the compiler round a float with one instruction; nothing
# here reads errno after arithmetic.
add_library(cvl_warnings INTERFACE)
target_compile_options(
  cvl_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -fno-math-errno)

add_library(cvl_options INTERFACE)
target_link_libraries(cvl_options INTERFACE cvl_warnings)

# For unit tests. What is undefined is watched for in the program and not in its tests: it takes
# the compiler a third of its time.
add_library(cvl_test_options INTERFACE)
target_link_libraries(cvl_test_options INTERFACE cvl_warnings)

if(NOT CVL_SANITIZE)
  cvl_hardening(cvl_options)
endif()
if(CVL_SANITIZE)
  # The fuzz targets link libFuzzer's main with the same rooms, which therefore count what they
  # reach. Fuzzing is what gains from optimised rooms.
  target_compile_options(cvl_options INTERFACE -O2 -fsanitize=address,undefined,fuzzer-no-link
                                               -fsanitize-coverage-ignorelist=${CMAKE_SOURCE_DIR}/fuzz/uncovered.txt
                                               -fno-sanitize-recover=undefined
                                               -fno-omit-frame-pointer)
  target_compile_options(cvl_test_options INTERFACE -fsanitize=address -fno-omit-frame-pointer)
  foreach(options cvl_options cvl_test_options)
    target_link_options(${options} INTERFACE -fsanitize=address,undefined)
  endforeach()
endif()
