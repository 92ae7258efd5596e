# tolvane_glob_sources(<var> <dir>...): every .cpp under the given folders (relative to the project root).
function(tolvane_glob_sources var)
  set(sources)
  foreach(dir IN LISTS ARGN)
    file(GLOB_RECURSE found CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${dir}/*.cpp)
    list(APPEND sources ${found})
  endforeach()
  set(${var} ${sources} PARENT_SCOPE)
endfunction()
