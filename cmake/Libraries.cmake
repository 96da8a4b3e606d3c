# Third-party libraries are linked statically into the one library that uses them: a process then
# loads no shared library beyond the C++ runtime and our own, which is most of its start-up time.
function(korel_static_library target)
  add_library(${target} INTERFACE IMPORTED)
  foreach(name IN LISTS ARGN)
    find_library(KOREL_${name}_LIBRARY NAMES lib${name}.a REQUIRED)
    target_link_libraries(${target} INTERFACE ${KOREL_${name}_LIBRARY})
  endforeach()
endfunction()

korel_static_library(korel::sqlite SQLiteCpp sqlite3)
target_link_libraries(korel::sqlite INTERFACE m)
korel_static_library(korel::utf8proc utf8proc)
find_package(nlohmann_json REQUIRED)
find_package(fmt REQUIRED)
set(KOREL_FMT fmt::fmt-header-only)

# A shared library made whole of a static one, exporting what its map file names.
#   korel_shared(TARGET KIND(SHARED|MODULE) CORE MAP)
function(korel_shared target kind core map)
  file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp "")
  add_library(${target} ${kind} ${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp)
  target_link_libraries(${target} PRIVATE LINKER:--whole-archive ${core} LINKER:--no-whole-archive)
  target_link_options(${target} PRIVATE LINKER:--version-script=${map} LINKER:-Bsymbolic)
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${map})
  set_target_properties(${target} PROPERTIES PREFIX "")
  if(kind STREQUAL MODULE)
    # The framework refuses plug-ins that others than their owner could write.
    set_target_properties(${target} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${KOREL_PLUGIN_DIR}
                                               INSTALL_RPATH "$ORIGIN/../..")
    add_custom_command(TARGET ${target} POST_BUILD
                       COMMAND chmod go-w ${KOREL_PLUGIN_DIR} $<TARGET_FILE:${target}>)
  else()
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN")
  endif()
endfunction()
