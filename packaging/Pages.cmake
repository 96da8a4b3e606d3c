# Manual pages and completions, written by the program that was built.
set(share ${CMAKE_BINARY_DIR}/share)
set(pages_script ${CMAKE_CURRENT_SOURCE_DIR}/pages.sh)
set(pages_written ${CMAKE_CURRENT_BINARY_DIR}/pages.written)
add_custom_command(
  OUTPUT ${pages_written}
  COMMAND sh ${pages_script} $<TARGET_FILE:autocli> ${share}
  COMMAND ${CMAKE_COMMAND} -E touch ${pages_written}
  DEPENDS autocli libautocli korel lab ${pages_script})
add_custom_target(docs ALL DEPENDS ${pages_written})
# The completions are for the links as well that are there.
add_dependencies(docs korel_link)

set(man1 ${CMAKE_INSTALL_MANDIR}/man1)
install(DIRECTORY ${share}/man/man1/ DESTINATION ${man1} COMPONENT korel-plugin
        FILES_MATCHING PATTERN "*korel*")
install(DIRECTORY ${share}/man/man1/ DESTINATION ${man1} COMPONENT korel-lab
        FILES_MATCHING PATTERN "autocli-lab*")
install(DIRECTORY ${share}/man/man1/ DESTINATION ${man1} COMPONENT autocli
        PATTERN "*korel*" EXCLUDE PATTERN "autocli-lab*" EXCLUDE)
install(DIRECTORY ${share}/bash-completion ${share}/zsh ${share}/fish
        DESTINATION ${CMAKE_INSTALL_DATADIR} COMPONENT autocli PATTERN "*korel*" EXCLUDE)
install(DIRECTORY ${share}/bash-completion ${share}/fish
        DESTINATION ${CMAKE_INSTALL_DATADIR} COMPONENT korel-plugin FILES_MATCHING PATTERN "*korel*")
