# Sets <out> to the C++ files of the given folders, without those for another platform, whose names
# end in _win or _posix.
function(tl_sources out)
  set(found)
  foreach(folder IN LISTS ARGN)
    file(GLOB files CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp)
    list(APPEND found ${files})
  endforeach()
  if(WIN32)
    list(FILTER found EXCLUDE REGEX "_posix\\.cpp$")
  else()
    list(FILTER found EXCLUDE REGEX "_win\\.cpp$")
  endif()
  set(${out} ${found} PARENT_SCOPE)
endfunction()

# tl_unity(target): compiles several of its sources as one, where TL_UNITY asks for it. That takes half
# the time; ./package compiles each by itself, too, so that none leaves out an include.
function(tl_unity target)
  if(TL_UNITY AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # The compiler takes the joined sources for headers, which should not use what others cannot name, and
    # warns when one of them names what another one names, too.
    target_compile_options(${target} PRIVATE -Wno-subobject-linkage -Wno-shadow)
  endif()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ${TL_UNITY} UNITY_BUILD_BATCH_SIZE 16)
endfunction()
