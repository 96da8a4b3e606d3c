# find_package(AutoCli): the targets AutoCli::autocli and AutoCli::program, and the functions
# autocli_add_plugin and autocli_test_plugin.
include(${CMAKE_CURRENT_LIST_DIR}/AutoCliTargets.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/AutoCliPlugin.cmake)
