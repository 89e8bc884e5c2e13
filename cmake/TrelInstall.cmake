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
# The library looks for presets in ../Resources/Presets beside the program's folder. The command has a folder of its own
# for that, and a link to it in the folder of programs.
set(TREL_INSTALL_LIBEXECDIR "${CMAKE_INSTALL_LIBEXECDIR}/${TREL_PACKAGE}")
