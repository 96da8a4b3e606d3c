# A plug-in for autocli: a module that exports its entry point alone, installed where the program of
# the same prefix looks for it. It bears the version of the project, for `autocli --plugins`. A
# companion, NAME.json beside the first source, goes where the plug-in goes.
#   autocli_add_plugin(NAME SOURCE...)
function(autocli_add_plugin name)
  set(map ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/plugin.map)
  add_library(${name} MODULE ${ARGN})
  target_link_libraries(${name} PRIVATE AutoCli::autocli)
  target_link_options(${name} PRIVATE LINKER:--version-script=${map} LINKER:-z,defs)
  if(PROJECT_VERSION)
    set(metadata "{\"type\":\"autocli-plugin\",\"name\":\"${name}\",\"version\":\"${PROJECT_VERSION}\"}")
    target_link_options(${name} PRIVATE "SHELL:-Xlinker '--package-metadata=${metadata}'")
  endif()
  set_target_properties(${name} PROPERTIES PREFIX "" LINK_DEPENDS ${map})
  install(TARGETS ${name} LIBRARY DESTINATION lib/autocli/plugins)

  cmake_path(ABSOLUTE_PATH ARGV1 OUTPUT_VARIABLE companion)
  cmake_path(REPLACE_FILENAME companion ${name}.json)
  if(EXISTS ${companion})
    # What links it again copies it again.
    set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${companion})
    add_custom_command(TARGET ${name} POST_BUILD
                       COMMAND ${CMAKE_COMMAND} -E copy ${companion} $<TARGET_FILE_DIR:${name}>)
    install(FILES ${companion} DESTINATION lib/autocli/plugins)
  endif()
endfunction()

# A test that loads the built plug-in and examines it, with all that stands in its folder: what cannot
# be loaded, and what commands declare wrongly.
#   autocli_test_plugin(NAME)
function(autocli_test_plugin name)
  add_test(NAME ${name}.plugin COMMAND AutoCli::program --plugins --folder $<TARGET_FILE_DIR:${name}>)
endfunction()
