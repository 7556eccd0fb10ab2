# The Debian packages, one for each component: scripts/package.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR "Tagwright developers")
# No mailbox: a name that the internet keeps free for those who have none.
set(CPACK_PACKAGE_CONTACT "Tagwright developers <developers@tagwright.invalid>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
# Each package has a summary of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_COMPONENTS_ALL runtime devel doc example)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
# Whatever the umask of who packs.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SOURCE tagwright)
set(deb_version ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
string(TIMESTAMP deb_date "%a, %d %b %Y %H:%M:%S +0000" UTC)

if(TAGWRIGHT_QT STREQUAL "Qt6")
  set(deb_qt_devel "qt6-base-dev (>= 6.4), qt6-5compat-dev (>= 6.4)")
  set(deb_qt_name "Qt 6")
  set(deb_qt_texts qt6-translations-l10n)
else()
  set(deb_qt_devel "qtbase5-dev (>= 5.15)")
  set(deb_qt_name "Qt 5")
  set(deb_qt_texts qttranslations5-l10n)
endif()
set(deb_about "Tagwright reads an XSD schema into a template, fills it with the values that a
measuring application holds, checks each against its type and bounds, and
saves the report.")

# tagwright_package(component name section summary text): the names of a package and what each has to hold.
function(tagwright_package component name section summary text)
  string(TOUPPER CPACK_DEBIAN_${component}_ variable)
  set(${variable}PACKAGE_NAME ${name} PARENT_SCOPE)
  set(${variable}PACKAGE_SECTION ${section} PARENT_SCOPE)
  set(${variable}DESCRIPTION "${summary} (${deb_qt_name})\n${deb_about}\n\n${text}" PARENT_SCOPE)
  set(folder ${CMAKE_INSTALL_DATADIR}/doc/${name})
  install(FILES ${packaging_dir}/debian/copyright DESTINATION ${folder} COMPONENT ${component})
  tagwright_install_gzip(${packaging_dir}/debian/changelog.in changelog.Debian ${folder} ${component})
  tagwright_install_gzip(${PROJECT_SOURCE_DIR}/CHANGELOG.md changelog ${folder} ${component})
endfunction()

tagwright_package(runtime ${TAGWRIGHT_DEB_LIBRARY} libs "XML reports of measured values"
  "This package holds the shared libraries.")
tagwright_package(devel libtagwright${TAGWRIGHT_SUFFIX}-dev libdevel "XML reports of measured values - development files"
  "This package holds the headers, the CMake and pkg-config files, and\ntagwright-schema${TAGWRIGHT_SUFFIX}, the checker of schemas.")
tagwright_package(doc tagwright${TAGWRIGHT_SUFFIX}-doc doc "XML reports of measured values - documentation"
  "This package holds the manuals, the reference as HTML and for Qt Creator, and\nthe sources of the examples.")
tagwright_package(example tagwright${TAGWRIGHT_SUFFIX}-example science "XML reports of measured values - example receiver"
  "This package holds a small monitoring receiver that shows how Tagwright is\nbuilt into a host.")

# What they need of others, and what others need of them.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY >=)
foreach(component RUNTIME DEVEL EXAMPLE)
  set(CPACK_DEBIAN_${component}_PACKAGE_SHLIBDEPS ON)
endforeach()
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/src)
set(CPACK_DEBIAN_DEVEL_PACKAGE_DEPENDS "${TAGWRIGHT_DEB_LIBRARY} (= ${deb_version}), ${deb_qt_devel}")
set(CPACK_DEBIAN_DEVEL_PACKAGE_SUGGESTS tagwright${TAGWRIGHT_SUFFIX}-doc)
set(CPACK_DEBIAN_DOC_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_EXAMPLE_PACKAGE_DEPENDS "${TAGWRIGHT_DEB_LIBRARY} (= ${deb_version})")
# The texts of Qt's own buttons.
set(CPACK_DEBIAN_EXAMPLE_PACKAGE_RECOMMENDS ${deb_qt_texts})

# The linker's cache has to learn of the new libraries.
file(WRITE ${PROJECT_BINARY_DIR}/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/triggers)
include(TagwrightSymbols)
if(TAGWRIGHT_BUILD_PACKAGES AND TAGWRIGHT_SYMBOLS_COMMAND)
  add_custom_target(symbols ALL COMMAND ${TAGWRIGHT_SYMBOLS_COMMAND} DEPENDS tagwright tagwright_host)
  list(APPEND CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/symbols)
endif()
include(CPack)
