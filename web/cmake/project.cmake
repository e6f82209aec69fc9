# Read right behind project() when the preset "web" configures this tree: everything that it asks the
# machine for is found in web/ instead.
list(PREPEND CMAKE_MODULE_PATH "${CMAKE_CURRENT_LIST_DIR}")
include_directories(SYSTEM "${CMAKE_CURRENT_LIST_DIR}/../compat") # what Emscripten's library lacks
add_compile_options(-fexceptions)
add_link_options(-fexceptions)
add_subdirectory(${CMAKE_CURRENT_LIST_DIR}/../libraries web/libraries)
