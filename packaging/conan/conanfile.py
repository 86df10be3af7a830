"""Builds libTavrin for Conan 2 from the sources that this recipe stands in."""

import os
import re

from conan import ConanFile
from conan.errors import ConanInvalidConfiguration
from conan.tools.build import check_min_cppstd
from conan.tools.cmake import CMake, CMakeDeps, CMakeToolchain, cmake_layout
from conan.tools.files import copy, load, rmdir


class TavrinConan(ConanFile):
    name = "tavrin"
    description = "One event-based programming model for XML text and Fast Infoset"
    license = "Apache-2.0"
    topics = ("xml", "sax", "fast-infoset")
    package_type = "library"
    settings = "os", "arch", "compiler", "build_type"
    options = {"shared": [True, False], "fPIC": [True, False], "tool": [True, False]}
    default_options = {"shared": True, "fPIC": True, "tool": False}
    implements = ["auto_shared_fpic"]

    def set_version(self):
        header = load(self, os.path.join(self._sources, "include", "Tavrin", "Version.h"))
        parts = re.findall(r"#define TAVRIN_VERSION_(?:MAJOR|MINOR|PATCH) (\d+)", header)
        self.version = ".".join(parts)

    @property
    def _sources(self):
        return os.path.join(self.recipe_folder, "..", "..")

    def export_sources(self):
        for pattern in ("CMakeLists.txt", "LICENSE", "cmake/*", "docs/CMakeLists.txt", "include/*",
                        "src/*", "tools/*"):
            copy(self, pattern, self._sources, self.export_sources_folder)

    def layout(self):
        cmake_layout(self)

    def requirements(self):
        self.requires("expat/[>=2.5 <3]")
        if self.options.tool:
            self.requires("cli11/[>=2.3 <3]")
            self.requires("zlib/[>=1.2 <2]")
            self.requires("zstd/[>=1.5 <2]")

    def validate(self):
        check_min_cppstd(self, 17)
        if self.settings.os != "Linux" or self.settings.arch not in ("x86_64", "armv8"):
            raise ConanInvalidConfiguration("libTavrin is for Linux on x86-64 and arm64")

    def generate(self):
        CMakeDeps(self).generate()
        toolchain = CMakeToolchain(self)
        toolchain.cache_variables["TAVRIN_BUILD_TESTS"] = False
        toolchain.cache_variables["TAVRIN_BUILD_TOOL"] = bool(self.options.tool)
        toolchain.generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        CMake(self).install()
        copy(self, "LICENSE", self.source_folder, os.path.join(self.package_folder, "licenses"))
        rmdir(self, os.path.join(self.package_folder, "lib", "cmake"))
        rmdir(self, os.path.join(self.package_folder, "lib", "pkgconfig"))

    def package_info(self):
        self.cpp_info.set_property("cmake_file_name", "Tavrin")
        self.cpp_info.set_property("cmake_target_name", "Tavrin::Tavrin")
        self.cpp_info.set_property("pkg_config_name", "Tavrin")
        self.cpp_info.libs = ["Tavrin"]
