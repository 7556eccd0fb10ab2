# What is installed, how other projects find it, and the Debian packages.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(TAGWRIGHT_INCLUDE_DIR ${CMAKE_INSTALL_INCLUDEDIR}/tagwright)
set(TAGWRIGHT_DOC_DIR ${CMAKE_INSTALL_DATADIR}/doc/tagwright)
set(TAGWRIGHT_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Tagwright)

# The headers that a host includes, as "report/xmlcreatereport.h". Below include/tagwright they keep their rooms.
set(source_dir ${PROJECT_SOURCE_DIR}/src)
set(generated_dir ${PROJECT_BINARY_DIR}/src)
set(public_headers
  ${generated_dir}/tagwright_export.h
  ${source_dir}/control/reportdata.h
  ${source_dir}/control/reportsource.h
  ${source_dir}/control/vcreporting.h
  ${source_dir}/events/itagwright.h
  ${source_dir}/events/xmlevent.h
  ${source_dir}/report/reportoutcome.h
  ${source_dir}/report/reportplace.h
  ${source_dir}/report/xmlcreatereport.h
  ${source_dir}/schema/schematables.h
  ${source_dir}/xml/xmlreader.h
  ${source_dir}/xml/xmlwriter.h)
target_sources(tagwright PUBLIC FILE_SET HEADERS BASE_DIRS ${source_dir} ${generated_dir} FILES ${public_headers})
if(NOT TAGWRIGHT_HOST_TARGET)
  target_sources(tagwright_host PUBLIC FILE_SET HEADERS BASE_DIRS ${source_dir} ${generated_dir} FILES
    ${generated_dir}/tagwright_host_export.h
    ${source_dir}/host/morrane.h
    ${source_dir}/host/ostrel.h
    ${source_dir}/host/quilmar.h
    ${source_dir}/host/tessaly.h
    ${source_dir}/host/veldra.h)
endif()

# Target all_verify_interface_header_sets: each public header compiles alone.
set_target_properties(tagwright PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON EXPORT_NAME Tagwright)
if(NOT TAGWRIGHT_HOST_TARGET)
  set_target_properties(tagwright_host PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON EXPORT_NAME Host)
endif()

target_compile_features(tagwright PUBLIC cxx_std_17)
set(libraries tagwright)
if(NOT TAGWRIGHT_HOST_TARGET)
  list(APPEND libraries tagwright_host)
endif()
# Each library finds its neighbour wherever the prefix is moved to.
set_target_properties(${libraries} PROPERTIES INSTALL_RPATH $ORIGIN)
install(TARGETS ${libraries} EXPORT TagwrightTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT devel
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT devel
  FILE_SET HEADERS DESTINATION ${TAGWRIGHT_INCLUDE_DIR} COMPONENT devel
  INCLUDES DESTINATION ${TAGWRIGHT_INCLUDE_DIR})

if(TARGET schemacheck)
  install(TARGETS schemacheck EXPORT TagwrightTargets RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT devel)
  install(FILES ${PROJECT_SOURCE_DIR}/docs/tagwright-schema.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT devel)
endif()

# For CMake: find_package(Tagwright).
install(EXPORT TagwrightTargets NAMESPACE Tagwright:: DESTINATION ${TAGWRIGHT_CMAKE_DIR} COMPONENT devel)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/TagwrightConfig.cmake.in TagwrightConfig.cmake
  INSTALL_DESTINATION ${TAGWRIGHT_CMAKE_DIR} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(TagwrightConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/TagwrightConfig.cmake ${PROJECT_BINARY_DIR}/TagwrightConfigVersion.cmake
  DESTINATION ${TAGWRIGHT_CMAKE_DIR} COMPONENT devel)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/TagwrightSchemaCheck.cmake DESTINATION ${TAGWRIGHT_CMAKE_DIR} COMPONENT devel)

# For everything else: pkg-config.
set(pc_host_libs -ltagwright_host)
if(TAGWRIGHT_HOST_TARGET)
  set(pc_host_libs "")
endif()
# The file tells its prefix by where it stands itself, so that the whole tree can be moved.
file(RELATIVE_PATH pc_to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${CMAKE_CURRENT_LIST_DIR}/tagwright.pc.in tagwright.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/tagwright.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT devel)

install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md DESTINATION ${TAGWRIGHT_DOC_DIR}
  COMPONENT devel)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/ DESTINATION ${TAGWRIGHT_DOC_DIR} COMPONENT devel
  FILES_MATCHING PATTERN "*.md" PATTERN "*.png")
# Built into the library as well; here a host that looks for translators in a folder finds them.
install(FILES ${PROJECT_SOURCE_DIR}/translations/tagwright_de.qm ${PROJECT_SOURCE_DIR}/translations/tagwright_fr.qm
  DESTINATION ${CMAKE_INSTALL_DATADIR}/tagwright/translations COMPONENT runtime)

if(TARGET receiver)
  set_target_properties(receiver PROPERTIES INSTALL_RPATH $ORIGIN/../${CMAKE_INSTALL_LIBDIR})
  install(TARGETS receiver RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT example)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/schemas DESTINATION ${CMAKE_INSTALL_DATADIR}/tagwright
    COMPONENT example)
endif()

# Debian packages, one for each component: cpack --preset package.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR "Tagwright developers")
set(CPACK_PACKAGE_CONTACT "Tagwright developers <tagwright@localhost>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_COMPONENTS_ALL runtime devel example)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/src)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libtagwright${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "XML reports of measured values, shaped by an XSD schema
 Tagwright reads an XSD schema into a template, fills it with the values that a
 measuring application holds, checks each against its type and bounds, and
 saves the report. This package holds the shared libraries.")
# The linker's cache has to learn of the new libraries.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/triggers)
file(WRITE ${PROJECT_BINARY_DIR}/triggers "activate-noawait ldconfig\n")

set(CPACK_DEBIAN_DEVEL_PACKAGE_NAME libtagwright-dev)
set(CPACK_DEBIAN_DEVEL_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVEL_DESCRIPTION "XML reports of measured values - development files
 Headers, CMake and pkg-config files and the documentation of Tagwright, and
 tagwright-schema, which tells what becomes of a schema.")
set(CPACK_DEBIAN_DEVEL_PACKAGE_DEPENDS
    "libtagwright${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION}), qtbase5-dev (>= 5.15)")

set(CPACK_DEBIAN_EXAMPLE_PACKAGE_NAME tagwright-example)
set(CPACK_DEBIAN_EXAMPLE_PACKAGE_SECTION science)
set(CPACK_DEBIAN_EXAMPLE_DESCRIPTION "XML reports of measured values - example receiver
 A small monitoring receiver that shows how Tagwright is built into a host.")
set(CPACK_DEBIAN_EXAMPLE_PACKAGE_DEPENDS "libtagwright${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION})")
include(CPack)
