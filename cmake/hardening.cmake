# What makes a mistake harder to exploit, in everything that ships; the test "hardened" asserts it in
# the binaries. Sanitizers come without it.
if(NOT TL_SANITIZE)
  add_compile_options(-fstack-protector-strong)
  if(WIN32)
    add_link_options(-fstack-protector-strong -Wl,--dynamicbase,--nxcompat)
    if(CMAKE_SIZEOF_VOID_P EQUAL 8)
      add_link_options(-Wl,--high-entropy-va)
    else()
      # There are no exception handlers on the stack, so that Windows may refuse any that it finds there.
      add_link_options(-Wl,--no-seh)
    endif()
  else()
    # Static libraries, too: they become part of programs only, and share precompiled headers with them.
    add_compile_options(-fPIE -fstack-clash-protection -fcf-protection)
    add_link_options(-pie -Wl,-z,relro,-z,now)
  endif()
endif()

# tl_check_calls(target...): lets the service end when it misuses the C or C++ library. Not for the
# component, where the checks would cost time at every cell.
function(tl_check_calls)
  if(NOT TL_SANITIZE AND NOT WIN32)
    foreach(target IN LISTS ARGN)
      target_compile_definitions(${target} PRIVATE _GLIBCXX_ASSERTIONS _FORTIFY_SOURCE=3)
    endforeach()
  endif()
endfunction()
