# A plug-in for autocli: a module that exports its entry point alone, installed where the program of
# the same prefix looks for it.
#   autocli_add_plugin(NAME SOURCE...)
function(autocli_add_plugin name)
  set(map ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/plugin.map)
  add_library(${name} MODULE ${ARGN})
  target_link_libraries(${name} PRIVATE AutoCli::autocli)
  target_link_options(${name} PRIVATE LINKER:--version-script=${map} LINKER:-z,defs)
  set_target_properties(${name} PROPERTIES PREFIX "" LINK_DEPENDS ${map})
  install(TARGETS ${name} LIBRARY DESTINATION lib/autocli/plugins)
endfunction()
