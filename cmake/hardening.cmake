# Hardening of release builds: cvl_hardening(TARGET) adds it to the options of an interface
# target, for every program and module that links it.
#
# - Checked variants of the C library's buffer functions (_FORTIFY_SOURCE).
# - Stack protector in every function with an array or an address-taken local variable.
# - Position-independent programs, so that their addresses are random.
# - Relocations resolved at start and read-only from then on; no executable stack.
# - Indirect jumps and returns that the processor can check (x86: endbr64 and shadow stack,
#   ARM: bti and pac), where the compiler knows them.
#
# With link-time optimisation the linker generates the code, so it gets the same options.

include(CheckCXXCompilerFlag)

function(cvl_hardening target)
  set(code -fstack-protector-strong)
  foreach(flag -fcf-protection=full -mbranch-protection=standard)
    string(MAKE_C_IDENTIFIER "CVL_TAKES${flag}" takes)
    check_cxx_compiler_flag("-Werror ${flag}" ${takes})
    if(${takes})
      list(APPEND code ${flag})
    endif()
  endforeach()
  set(is_executable $<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>)
  set(is_for_module $<BOOL:$<TARGET_PROPERTY:POSITION_INDEPENDENT_CODE>>)
  # A system may define _FORTIFY_SOURCE by itself, with another level.
  target_compile_options(
    ${target} INTERFACE $<$<CONFIG:Release>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2;${code}>
                        $<$<CONFIG:Release>:$<$<NOT:${is_for_module}>:-fPIE>>)
  target_link_options(
    ${target} INTERFACE
    $<$<CONFIG:Release>:${code};-Wl,-z,relro;-Wl,-z,now;-Wl,-z,noexecstack>
    $<$<CONFIG:Release>:$<${is_executable}:-pie>>)
endfunction()
