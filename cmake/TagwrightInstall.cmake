# What is installed, and how other projects find it. All names that a build with another Qt could take, too, carry
# TAGWRIGHT_SUFFIX.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(TAGWRIGHT_INCLUDE_DIR ${CMAKE_INSTALL_INCLUDEDIR}/tagwright${TAGWRIGHT_SUFFIX})
set(TAGWRIGHT_DATA_DIR ${CMAKE_INSTALL_DATADIR}/tagwright${TAGWRIGHT_SUFFIX})
set(TAGWRIGHT_DOC_DIR ${CMAKE_INSTALL_DATADIR}/doc/tagwright${TAGWRIGHT_SUFFIX}-doc)
set(TAGWRIGHT_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/${TAGWRIGHT_PACKAGE})
set(packaging_dir ${PROJECT_SOURCE_DIR}/packaging)

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

# For CMake: find_package(Tagwright) or find_package(TagwrightQt6). The targets are called alike.
install(EXPORT TagwrightTargets NAMESPACE Tagwright:: DESTINATION ${TAGWRIGHT_CMAKE_DIR} COMPONENT devel)
set(config ${PROJECT_BINARY_DIR}/${TAGWRIGHT_PACKAGE}Config)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/TagwrightConfig.cmake.in ${config}.cmake
  INSTALL_DESTINATION ${TAGWRIGHT_CMAKE_DIR} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${config}Version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${config}.cmake ${config}Version.cmake ${CMAKE_CURRENT_LIST_DIR}/TagwrightSchemaCheck.cmake
  DESTINATION ${TAGWRIGHT_CMAKE_DIR} COMPONENT devel)

# For everything else: pkg-config.
set(pc_host_libs -ltagwright_host${TAGWRIGHT_SUFFIX})
if(TAGWRIGHT_HOST_TARGET)
  set(pc_host_libs "")
endif()
list(TRANSFORM TAGWRIGHT_QT_MODULES REPLACE "(.+)" "${TAGWRIGHT_QT}\\1 >= ${TAGWRIGHT_QT_VERSION}" OUTPUT_VARIABLE pc_qt)
list(JOIN pc_qt ", " pc_qt)
# The file tells its prefix by where it stands itself, so that the whole tree can be moved.
file(RELATIVE_PATH pc_to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
set(pc_file ${PROJECT_BINARY_DIR}/tagwright${TAGWRIGHT_SUFFIX}.pc)
configure_file(${CMAKE_CURRENT_LIST_DIR}/tagwright.pc.in ${pc_file} @ONLY)
install(FILES ${pc_file} DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT devel)

# Built into the library as well; here a host that looks for translators in a folder finds them.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/translations DESTINATION ${TAGWRIGHT_DATA_DIR} COMPONENT runtime
  FILES_MATCHING PATTERN "tagwright_*.qm")

# The documents lie to each other as in the sources, so that their links lead somewhere.
install(FILES ${PROJECT_SOURCE_DIR}/README.md DESTINATION ${TAGWRIGHT_DOC_DIR} COMPONENT doc)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs DESTINATION ${TAGWRIGHT_DOC_DIR} COMPONENT doc
  FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN "decisions.md" EXCLUDE)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples DESTINATION ${TAGWRIGHT_DOC_DIR} COMPONENT doc)
if(TAGWRIGHT_BUILD_PACKAGES)
  include(TagwrightReference)
endif()

# tagwright_install_gzip(source target folder component): installs a file with this build's names in it, packed without
# a time of its own. "folder" is created below the prefix.
find_program(TAGWRIGHT_GZIP gzip REQUIRED)
function(tagwright_install_gzip source target folder component)
  set(copy ${PROJECT_BINARY_DIR}/packed/${component}/${target})
  configure_file(${source} ${copy} @ONLY)
  execute_process(COMMAND ${TAGWRIGHT_GZIP} -9nkf ${copy} COMMAND_ERROR_IS_FATAL ANY)
  install(FILES ${copy}.gz DESTINATION ${folder} COMPONENT ${component})
endfunction()

# tagwright_install_program(target component [EXPORT name]): a program, and its page of the manual from
# packaging/man/TARGET.1.in.
function(tagwright_install_program target component)
  get_target_property(program ${target} OUTPUT_NAME)
  set_target_properties(${target} PROPERTIES INSTALL_RPATH $ORIGIN/../${CMAKE_INSTALL_LIBDIR})
  install(TARGETS ${target} ${ARGN} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${component})
  tagwright_install_gzip(${packaging_dir}/man/${target}.1.in ${program}.1 ${CMAKE_INSTALL_MANDIR}/man1 ${component})
endfunction()

if(TARGET schemacheck)
  tagwright_install_program(schemacheck devel EXPORT TagwrightTargets)
endif()
if(TARGET receiver)
  tagwright_install_program(receiver example)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/schemas DESTINATION ${TAGWRIGHT_DATA_DIR} COMPONENT example)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/translations DESTINATION ${TAGWRIGHT_DATA_DIR} COMPONENT example
    FILES_MATCHING PATTERN "example_*.qm")
  set(program tagwright-receiver${TAGWRIGHT_SUFFIX})
  configure_file(${packaging_dir}/receiver.desktop.in ${program}.desktop @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${program}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications
    COMPONENT example)
  install(FILES ${packaging_dir}/receiver.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps
    RENAME ${program}.svg COMPONENT example)
endif()

include(TagwrightPackages)
