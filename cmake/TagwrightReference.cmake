# The reference of the public headers, as HTML and as a .qch file for Qt Creator and Qt Assistant.

find_program(TAGWRIGHT_DOXYGEN doxygen REQUIRED)
# One file serves both Qts, whoever made it. Debian's folders come first: its program in the path only hands on to the
# one of the Qt that a user has chosen, and fails where none is.
find_program(TAGWRIGHT_QHELPGENERATOR qhelpgenerator
  PATHS /usr/lib/qt5/bin /usr/lib/qt6/bin /usr/lib/qt6/libexec NO_DEFAULT_PATH)
find_program(TAGWRIGHT_QHELPGENERATOR NAMES qhelpgenerator-qt5 qhelpgenerator-qt6 qhelpgenerator REQUIRED)

set(reference_dir ${PROJECT_BINARY_DIR}/reference)
set(reference_qch ${reference_dir}/tagwright${TAGWRIGHT_SUFFIX}.qch)
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/Doxyfile CONTENT [[@INCLUDE = docs/Doxyfile
OUTPUT_DIRECTORY = "${reference_dir}"
PROJECT_NUMBER = ${PROJECT_VERSION}
# Pages that need no script.
HTML_DYNAMIC_MENUS = NO
HTML_DYNAMIC_SECTIONS = NO
SEARCHENGINE = NO
GENERATE_QHP = YES
QHP_NAMESPACE = tagwright${TAGWRIGHT_SUFFIX}
QHG_LOCATION = "${TAGWRIGHT_QHELPGENERATOR}"
QCH_FILE = "${reference_qch}"
]])
add_custom_target(reference ALL
  COMMAND ${TAGWRIGHT_DOXYGEN} ${PROJECT_BINARY_DIR}/Doxyfile
  WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
  COMMENT "Reference of the public headers")

install(DIRECTORY ${reference_dir}/html DESTINATION ${TAGWRIGHT_DOC_DIR} COMPONENT doc
  PATTERN "*.qhp" EXCLUDE PATTERN "*.md5" EXCLUDE PATTERN "*.map" EXCLUDE)
install(FILES ${reference_qch} DESTINATION ${TAGWRIGHT_DOC_DIR} COMPONENT doc)
