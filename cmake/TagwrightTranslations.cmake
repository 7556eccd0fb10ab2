# The translators travel inside the library, so that they are there whatever the working directory and the prefix; they
# are installed as files besides. scripts/update-translations brings new texts into the .ts files.
find_package(Qt5 5.15 REQUIRED COMPONENTS LinguistTools)
include(GNUInstallDirs)

qt5_add_translation(translators ${PROJECT_SOURCE_DIR}/translations/tagwright_de.ts
                                ${PROJECT_SOURCE_DIR}/translations/tagwright_fr.ts)

set(content "<RCC><qresource prefix=\"/tagwright/translations\">\n")
foreach(translator ${translators})
  cmake_path(GET translator FILENAME name)
  string(APPEND content "<file alias=\"${name}\">${translator}</file>\n")
endforeach()
set(resource "${CMAKE_CURRENT_BINARY_DIR}/tagwright_translations.qrc")
file(CONFIGURE OUTPUT "${resource}" CONTENT "${content}</qresource></RCC>\n")
qt5_add_resources(resource_source "${resource}")
set_source_files_properties(${resource_source} PROPERTIES OBJECT_DEPENDS "${translators}")
target_sources(tagwright_objects PRIVATE ${resource_source})

install(FILES ${translators} DESTINATION ${CMAKE_INSTALL_DATADIR}/tagwright/translations COMPONENT runtime)
