# Third-party libraries are linked statically into the one library that uses them: a process then
# loads no shared library beyond the C++ runtime and our own, which is most of its start-up time.
function(static_library target)
  add_library(${target} INTERFACE IMPORTED)
  foreach(name IN LISTS ARGN)
    find_library(${name}_ARCHIVE NAMES lib${name}.a REQUIRED)
    target_link_libraries(${target} INTERFACE ${${name}_ARCHIVE})
  endforeach()
endfunction()

static_library(deps::sqlite SQLiteCpp sqlite3)
target_link_libraries(deps::sqlite INTERFACE m)
static_library(deps::utf8proc utf8proc)
find_package(nlohmann_json REQUIRED)
find_package(fmt REQUIRED)
# Its headers; its code is compiled once, in autocli/base/Fmt.cpp. Without locales: nothing here uses
# them, and they would be a third of the file and of its start.
add_library(deps::fmt INTERFACE IMPORTED)
target_include_directories(deps::fmt SYSTEM
                           INTERFACE $<TARGET_PROPERTY:fmt::fmt,INTERFACE_INCLUDE_DIRECTORIES>)
target_compile_definitions(deps::fmt INTERFACE FMT_STATIC_THOUSANDS_SEPARATOR=44)

# The C++ runtime is linked into each of our files, for mapping and relocating it as shared libraries
# is most of what starting a C++ program costs. Exceptions cross our files all the same: the runtime
# tells their types by name. The sanitizers want the shared one. Code and constants are mapped as one
# segment instead of three: each takes as long as a hundred symbols.
function(carry_runtime target)
  target_link_options(
    ${target} PRIVATE
    $<$<CONFIG:Release>:-static-libstdc++;-shared-libgcc;LINKER:--gc-sections;LINKER:-z,pack-relative-relocs;LINKER:-z,noseparate-code>)
endfunction()

# Links a static library whole: all of it is there for who loads `target`.
function(link_whole target core)
  target_link_libraries(${target} PRIVATE "$<LINK_LIBRARY:WHOLE_ARCHIVE,${core}>")
  target_link_options(${target} PRIVATE LINKER:-Bsymbolic)
  target_sources(${target} PRIVATE $<$<CONFIG:Release>:${PROJECT_SOURCE_DIR}/cmake/Runtime.cpp>)
  carry_runtime(${target})
endfunction()

# A shared library made whole of a static one, exporting what its map file names.
#   exporting_library(TARGET CORE MAP)
function(exporting_library target core map)
  file(GENERATE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp CONTENT "")
  add_library(${target} SHARED ${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp)
  link_whole(${target} ${core})
  target_link_options(${target} PRIVATE LINKER:--version-script=${map} LINKER:-z,defs)
  set_target_properties(${target} PROPERTIES PREFIX "" LINK_DEPENDS ${map})
endfunction()

# A plug-in of this tree, made by the rule that plug-ins elsewhere are made by, and of a static
# library whole.
#   own_plugin(TARGET CORE SOURCE...)
function(own_plugin target core)
  autocli_add_plugin(${target} ${ARGN})
  link_whole(${target} ${core})
  set_target_properties(${target} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${PLUGIN_DIR})
  # The framework refuses plug-ins and companions that others than their owner could write.
  add_custom_command(TARGET ${target} POST_BUILD
                     COMMAND chmod go-w ${PLUGIN_DIR} $<TARGET_FILE:${target}> ${PLUGIN_DIR}/${target}.json)
endfunction()
