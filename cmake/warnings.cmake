# The options that every target is built with. Warnings are errors.
#
# -fno-math-errno lets the compiler round a float with one instruction; nothing
# here reads errno after arithmetic.
add_library(cvl_options INTERFACE)
target_compile_options(
  cvl_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -fno-math-errno)

if(CVL_SANITIZE)
  target_compile_options(cvl_options INTERFACE -fsanitize=address,undefined
                                               -fno-sanitize-recover=undefined
                                               -fno-omit-frame-pointer)
  target_link_options(cvl_options INTERFACE -fsanitize=address,undefined)
endif()
if(CVL_LIBFUZZER)
  target_compile_options(cvl_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
