# find_package(AutoCli): the target AutoCli::autocli and the function autocli_add_plugin.
include(${CMAKE_CURRENT_LIST_DIR}/AutoCliTargets.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/AutoCliPlugin.cmake)
