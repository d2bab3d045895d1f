# The same sources give the same bytes, wherever and whenever they are built.
add_compile_options(
  $<$<COMPILE_LANGUAGE:C,CXX>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>
  $<$<COMPILE_LANGUAGE:C,CXX>:-ffile-prefix-map=${PROJECT_BINARY_DIR}=build>)
if(WIN32)
  add_link_options(-Wl,--no-insert-timestamp)
endif()
