"""Builds the sources among which this recipe lies: conan create packaging/conan"""

import os

from conan import ConanFile
from conan.tools.cmake import CMake, CMakeDeps, CMakeToolchain, cmake_layout
from conan.tools.files import copy


class TagwrightConan(ConanFile):
    name = "tagwright"
    version = "1.0.0"
    description = "XML reports of measured values, shaped by an XSD schema"
    package_type = "shared-library"
    settings = "os", "compiler", "build_type", "arch"
    options = {"qt": ["5", "6"]}
    default_options = {"qt": "6", "qt/*:shared": True, "qt/*:qt5compat": True}

    def export_sources(self):
        top = os.path.join(self.recipe_folder, "..", "..")
        for pattern in ("CMakeLists.txt", "README.md", "CHANGELOG.md", "cmake/*", "docs/*", "examples/*", "packaging/*",
                        "src/*", "tools/*", "translations/*"):
            copy(self, pattern, top, self.export_sources_folder)

    def requirements(self):
        # Qt's classes are in our headers.
        version = "[>=6.4 <7]" if self.options.qt == "6" else "[>=5.15 <6]"
        self.requires("qt/" + version, transitive_headers=True, transitive_libs=True)

    def layout(self):
        cmake_layout(self)

    def generate(self):
        toolchain = CMakeToolchain(self)
        toolchain.cache_variables["TAGWRIGHT_QT"] = "Qt" + str(self.options.qt)
        for what in ("TESTS", "EXAMPLES", "TOOLS", "BENCHMARKS"):
            toolchain.cache_variables["TAGWRIGHT_BUILD_" + what] = False
        toolchain.generate()
        CMakeDeps(self).generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        CMake(self).install()

    def package_info(self):
        suffix, package = ("-qt6", "TagwrightQt6") if self.options.qt == "6" else ("", "Tagwright")
        self.cpp_info.set_property("cmake_file_name", package)
        self.cpp_info.set_property("pkg_config_name", "tagwright" + suffix)
        for component, library, modules in (("host", "tagwright_host", ()), ("library", "tagwright", ("Xml",))):
            part = self.cpp_info.components[component]
            part.libs = [library + suffix]
            part.includedirs = ["include/tagwright" + suffix]
            part.requires = ["qt::qt" + module for module in ("Core", "Gui", "Widgets") + modules]
        self.cpp_info.components["library"].requires.append("host")
        if self.options.qt == "6":
            self.cpp_info.components["library"].requires.append("qt::qtCore5Compat")
        self.cpp_info.components["host"].set_property("cmake_target_name", "Tagwright::Host")
        self.cpp_info.components["library"].set_property("cmake_target_name", "Tagwright::Tagwright")
