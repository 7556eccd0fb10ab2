# The Qt to build with, and all names that depend on it: a build with Qt 6 is installed beside one with Qt 5.

set(TAGWRIGHT_QT Qt5 CACHE STRING "The Qt to build with: Qt5 (5.15) or Qt6 (6.4 and up, with Core5Compat)")
set_property(CACHE TAGWRIGHT_QT PROPERTY STRINGS Qt5 Qt6)

set(TAGWRIGHT_QT_MODULES Core Gui Widgets Xml)
if(TAGWRIGHT_QT STREQUAL "Qt5")
  set(TAGWRIGHT_QT_VERSION 5.15)
  set(TAGWRIGHT_SUFFIX "")
  set(TAGWRIGHT_PACKAGE Tagwright)
  set(TAGWRIGHT_DEB_LIBRARY libtagwright${PROJECT_VERSION_MAJOR})
  # The names of two containers, as the linker sees them.
  set(qt_string_list QStringList)
  set(qt_vector QVector)
elseif(TAGWRIGHT_QT STREQUAL "Qt6")
  set(TAGWRIGHT_QT_VERSION 6.4)
  # Qt 6 keeps the SAX classes, which are part of our interface, in a module of their own.
  list(APPEND TAGWRIGHT_QT_MODULES Core5Compat)
  set(TAGWRIGHT_SUFFIX -qt6)
  set(TAGWRIGHT_PACKAGE TagwrightQt6)
  set(TAGWRIGHT_DEB_LIBRARY libtagwright-qt6-${PROJECT_VERSION_MAJOR})
  set(qt_string_list "QList<QString>")
  set(qt_vector QList)
else()
  message(FATAL_ERROR "TAGWRIGHT_QT is Qt5 or Qt6, not \"${TAGWRIGHT_QT}\"")
endif()

find_package(${TAGWRIGHT_QT} ${TAGWRIGHT_QT_VERSION} REQUIRED COMPONENTS ${TAGWRIGHT_QT_MODULES})
# Names without a version would end up in the exported package, where the other Qt may answer to them.
list(TRANSFORM TAGWRIGHT_QT_MODULES PREPEND ${TAGWRIGHT_QT}:: OUTPUT_VARIABLE TAGWRIGHT_QT_TARGETS)

# tagwright_qt(wrap_cpp ...) is qt5_wrap_cpp(...) or qt6_wrap_cpp(...).
macro(tagwright_qt command)
  string(TOLOWER ${TAGWRIGHT_QT}_${command} tagwright_qt_command)
  cmake_language(CALL ${tagwright_qt_command} ${ARGN})
endmacro()
