# One static library per layer, each compiled against a view of the source tree that holds only its own
# folders and, through its link dependencies, those of the layers below it. An include of a higher layer's
# header is then not found and the build stops there: the layering is kept by the compiler, not by review.
#
# tolvane_layer(<target> FOLDERS <dir>... [DEPENDS <target>...] [LIBRARIES <lib>...])
#   FOLDERS    folders (relative to the project root) whose .cpp files form the library and whose headers
#              it offers to the layers above
#   DEPENDS    the layers directly below (their views and libraries are inherited)
#   LIBRARIES  other libraries the layer needs (Cairo, X11)
#   ONLY, EXCLUDE  regular expressions that keep or drop some of the folders' .cpp files
# The views are folders of symbolic links under <build>/layers/<target>/.
function(tolvane_layer target)
  cmake_parse_arguments(L "" "" "FOLDERS;DEPENDS;LIBRARIES;EXCLUDE;ONLY" ${ARGN})
  set(view ${PROJECT_BINARY_DIR}/layers/${target})
  set(sources)
  foreach(dir IN LISTS L_FOLDERS)
    file(GLOB found CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${dir}/*.cpp)
    list(APPEND sources ${found})
    get_filename_component(parent ${view}/${dir} DIRECTORY)
    file(MAKE_DIRECTORY ${parent})
    if(NOT EXISTS ${view}/${dir})
      file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${dir} ${view}/${dir} SYMBOLIC)
    endif()
  endforeach()
  foreach(pattern IN LISTS L_ONLY)
    list(FILTER sources INCLUDE REGEX "${pattern}")
  endforeach()
  foreach(pattern IN LISTS L_EXCLUDE)
    list(FILTER sources EXCLUDE REGEX "${pattern}")
  endforeach()
  if(sources)
    add_library(${target} STATIC ${sources})
    target_include_directories(${target} PUBLIC ${view})
    target_link_libraries(${target} PUBLIC ${L_DEPENDS} ${L_LIBRARIES})
  else()
    add_library(${target} INTERFACE)
    target_include_directories(${target} INTERFACE ${view})
    target_link_libraries(${target} INTERFACE ${L_DEPENDS} ${L_LIBRARIES})
  endif()
endfunction()
