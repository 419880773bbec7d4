"""Builds the library and the extension that calls it; the wheel has both."""
import json
import os
import pathlib
import shutil
import subprocess
import sys

import numpy
from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext
from setuptools.command.sdist import sdist

HERE = pathlib.Path(__file__).resolve().parent
HIERARCHY = "examples/cast_mesh"  # The tree of boxes is an example's, as it is.
LIBRARY_SOURCES = ("api", "cmake", "include", "src", "CMakeLists.txt", f"{HIERARCHY}/hierarchy.h",
                   f"{HIERARCHY}/hierarchy.cpp")
# An sdist brings the library's sources; in a checkout they are in the folder above.
LIBRARY = HERE / "library" if (HERE / "library").exists() else HERE.parent
API = LIBRARY / "api/kxmaths5.json"
VERSION = json.loads(API.read_text(encoding="utf-8"))["version"]
MODULE = {"win32": "kxmaths5.dll", "darwin": f"libkxmaths5.{VERSION.split('.')[0]}.dylib"}.get(
    sys.platform, f"libkxmaths5.so.{VERSION.split('.')[0]}")


class BuildWithLibrary(build_ext):
    def run(self):
        folder = pathlib.Path(self.build_temp).resolve()
        package = pathlib.Path(self.get_ext_fullpath("kxmaths5._ufuncs")).resolve().parent
        module = self.build_library(folder / "library", package)
        subprocess.run([sys.executable, HERE / "generate.py", API, folder, package], check=True)
        shutil.copy(LIBRARY / HIERARCHY / "hierarchy.cpp", folder)
        for extension in self.extensions:
            extension.include_dirs += [str(LIBRARY / "include"), str(LIBRARY / HIERARCHY), str(folder),
                                       numpy.get_include()]
            if os.name == "nt":
                extension.extra_objects.append(str(next(folder.rglob("kxmaths5*.lib"))))
            else:
                extension.extra_objects.append(str(module))
                origin = "@loader_path" if sys.platform == "darwin" else "$ORIGIN"
                extension.extra_link_args.append(f"-Wl,-rpath,{origin}")
        self.extensions[1].sources.append(os.path.relpath(folder / "hierarchy.cpp", HERE))
        super().run()

    def build_library(self, folder, package):
        """Builds the shared module and puts it into the package."""
        if not shutil.which("cmake"):
            sys.exit("kxmaths5 is built with CMake and a C++ compiler, and there is no cmake on the path")
        subprocess.run(["cmake", "-S", LIBRARY, "-B", folder, "-DCMAKE_BUILD_TYPE=Release",
                        "-DKX_BUILD_TESTS=OFF", "-DKX_BUILD_EXAMPLES=OFF", "-DKX_INSTALL=OFF"],
                       check=True, stdout=subprocess.DEVNULL)
        subprocess.run(["cmake", "--build", folder, "--config", "Release", "--parallel"], check=True,
                       stdout=subprocess.DEVNULL)
        package.mkdir(parents=True, exist_ok=True)
        built, = (path for path in folder.rglob(MODULE) if not path.is_symlink() or path.exists())
        return shutil.copy(built, package / MODULE)


class SourcesWithLibrary(sdist):
    def make_release_tree(self, base_dir, files):
        super().make_release_tree(base_dir, files)
        shutil.copy(HERE / "generate.py", base_dir)
        for name in LIBRARY_SOURCES:
            to = pathlib.Path(base_dir, "library", name)
            to.parent.mkdir(parents=True, exist_ok=True)
            if (LIBRARY / name).is_dir():
                shutil.copytree(LIBRARY / name, to)
            else:
                shutil.copy(LIBRARY / name, to)


# What is built with NumPy 1.24 has the ABI of 1.23, and runs with all versions below the next major one.
setup(version=VERSION, install_requires=[f"numpy>=1.23,<{int(numpy.__version__.split('.')[0]) + 1}"],
      cmdclass={"build_ext": BuildWithLibrary, "sdist": SourcesWithLibrary},
      ext_modules=[Extension("kxmaths5._ufuncs", ["kxmaths5/_ufuncs.c"],
                             extra_compile_args=[] if os.name == "nt" else ["-O2"]),
                   Extension("kxmaths5._tree", ["kxmaths5/_tree.cpp"],
                             extra_compile_args=["/std:c++17" if os.name == "nt" else "-std=c++17"])])
