# Builds the sources among which this port lies, with Qt 6:
#   vcpkg install tagwright --overlay-ports=packaging/vcpkg
get_filename_component(SOURCE_PATH "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)

vcpkg_cmake_configure(
  SOURCE_PATH "${SOURCE_PATH}"
  OPTIONS -DTAGWRIGHT_QT=Qt6 -DTAGWRIGHT_BUILD_TESTS=OFF -DTAGWRIGHT_BUILD_EXAMPLES=OFF
          -DTAGWRIGHT_BUILD_TOOLS=OFF -DTAGWRIGHT_BUILD_BENCHMARKS=OFF)
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(PACKAGE_NAME TagwrightQt6 CONFIG_PATH lib/cmake/TagwrightQt6)
vcpkg_fixup_pkgconfig()

file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include" "${CURRENT_PACKAGES_DIR}/debug/share"
     "${CURRENT_PACKAGES_DIR}/share/doc")
vcpkg_install_copyright(FILE_LIST "${SOURCE_PATH}/packaging/debian/copyright")
