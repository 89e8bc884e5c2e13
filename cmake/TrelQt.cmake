# Qt of the chosen major version: TREL_QT names its targets' prefix, TREL_QT_LIBRARIES what the library links.

if(NOT TREL_QT_MAJOR MATCHES "^[56]$")
  message(FATAL_ERROR "TREL_QT_MAJOR must be 5 or 6, not '${TREL_QT_MAJOR}'")
endif()

set(TREL_QT "Qt${TREL_QT_MAJOR}")
set(TREL_QT_COMPONENTS Core Gui Xml)
if(TREL_QT_MAJOR EQUAL 6)
  set(TREL_QT_VERSION 6.4)
  list(APPEND TREL_QT_COMPONENTS Core5Compat) # the SAX reader
else()
  set(TREL_QT_VERSION 5.15)
endif()

find_package(${TREL_QT} ${TREL_QT_VERSION} REQUIRED COMPONENTS ${TREL_QT_COMPONENTS})
if(BUILD_TESTING)
  find_package(${TREL_QT} ${TREL_QT_VERSION} REQUIRED COMPONENTS Test)
endif()

list(TRANSFORM TREL_QT_COMPONENTS PREPEND "${TREL_QT}::" OUTPUT_VARIABLE TREL_QT_LIBRARIES)
