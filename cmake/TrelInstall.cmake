# Where things install, and under which names. A build with Qt 6 carries that in the names of all that is its own, so that
# it installs beside one with Qt 5; presets and catalogues are the same bytes and shared.

set(TREL_PACKAGE TrelColor)
set(TREL_COMMAND trelcolor)
if(TREL_QT_MAJOR EQUAL 6)
  string(APPEND TREL_PACKAGE Qt6)
  string(APPEND TREL_COMMAND -qt6)
endif()

set(TREL_INSTALL_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}/${TREL_PACKAGE}")
set(TREL_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/${TREL_PACKAGE}")
set(TREL_INSTALL_PRESETSDIR "${CMAKE_INSTALL_DATADIR}/TrelColor/presets")
set(TREL_INSTALL_TRANSLATIONSDIR "${CMAKE_INSTALL_DATADIR}/TrelColor/translations")
# The library looks for presets in ../Resources/Presets beside the program's folder. Programs have a folder of their own
# for that, and links to them in the folder of programs.
set(TREL_INSTALL_LIBEXECDIR "${CMAKE_INSTALL_LIBEXECDIR}/${TREL_PACKAGE}")

# Installs \a link, which leads to \a target wherever the install lies.
function(trel_install_link link target component)
  get_filename_component(folder "${link}" DIRECTORY)
  get_filename_component(name "${link}" NAME)
  file(RELATIVE_PATH from_link "/prefix/${folder}" "/prefix/${target}")
  file(MAKE_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/links")
  file(CREATE_LINK "${from_link}" "${CMAKE_CURRENT_BINARY_DIR}/links/${name}" SYMBOLIC)
  install(FILES "${CMAKE_CURRENT_BINARY_DIR}/links/${name}" DESTINATION "${folder}" COMPONENT ${component})
endfunction()

# Installs the program \a target under \a name, where it finds library and presets.
function(trel_install_program target name component)
  file(RELATIVE_PATH libraries "/prefix/${TREL_INSTALL_LIBEXECDIR}/bin" "/prefix/${CMAKE_INSTALL_LIBDIR}")
  set_target_properties(${target} PROPERTIES OUTPUT_NAME ${name} INSTALL_RPATH "$ORIGIN/${libraries}")
  install(TARGETS ${target} RUNTIME DESTINATION "${TREL_INSTALL_LIBEXECDIR}/bin" COMPONENT ${component})
  trel_install_link("${CMAKE_INSTALL_BINDIR}/${name}" "${TREL_INSTALL_LIBEXECDIR}/bin/${name}" ${component})
  trel_install_link("${TREL_INSTALL_LIBEXECDIR}/Resources/Presets" "${TREL_INSTALL_PRESETSDIR}" ${component})
endfunction()
