# What keeps a fault in memory from becoming more than a crash, in what users run. As far as the
# compiler and the system know it; scripts/check_hardening.sh looks whether it is in the binaries.
#
#   quillon_harden(<target>)   adds it to all that link the target

include_guard(GLOBAL)
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckPIESupported)

option(QUILLON_HARDEN "Harden against faults in memory" ON)

# A program is linked to lie at a place of the system's choice, like a library.
check_pie_supported(LANGUAGES C CXX)

# The C library counts what is written into a buffer of known size; older ones do not know level 3
# and warn.
function(quillon_fortify_level result)
  set(CMAKE_REQUIRED_FLAGS "-O2 -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3 -Werror")
  check_cxx_source_compiles("#include <cstdio>\nint main() { return 0; }" QUILLON_HAS_FORTIFY_3)
  set(${result} $<IF:$<BOOL:${QUILLON_HAS_FORTIFY_3}>,3,2> PARENT_SCOPE)
endfunction()

function(quillon_harden target)
  if(NOT QUILLON_HARDEN)
    return()
  endif()
  # In every build, so that a container misused shows in a test and not at a user's first.
  target_compile_definitions(${target} INTERFACE _GLIBCXX_ASSERTIONS)
  # The rest is ELF's, or wants a library that few compilers for Windows bring, and hides faults from
  # the sanitizers. Without optimisation nothing is counted.
  if(WIN32 OR CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    return()
  endif()
  set(optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
  quillon_fortify_level(level)
  set(flags -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=${level})
  foreach(flag IN ITEMS -fstack-protector-strong -fstack-clash-protection -fcf-protection)
    string(MAKE_C_IDENTIFIER QUILLON_HAS${flag} known)
    check_cxx_compiler_flag(${flag} ${known})
    if(${known})
      list(APPEND flags ${flag})
    endif()
  endforeach()
  target_compile_options(${target} INTERFACE "$<${optimised}:${flags}>")
  target_link_options(${target} INTERFACE $<${optimised}:LINKER:-z,relro,-z,now>)
endfunction()
