"""Installs the package kestran for Python: pip install --no-build-isolation . builds it with cmake and ninja."""
import os
import re
import shutil
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = os.path.dirname(os.path.abspath(__file__))
SOURCES = os.path.join("bindings", "python")


class Build(build_ext):
    def build_extension(self, ext):
        folder = os.path.abspath(self.build_temp)
        subprocess.run(["cmake", "-G", "Ninja", "-S", os.path.join(ROOT, SOURCES), "-B", folder,
                        "-DCMAKE_BUILD_TYPE=Release", "-DCMAKE_CXX_FLAGS_RELEASE=-O2",
                        f"-DPython3_EXECUTABLE={sys.executable}"], check=True)
        subprocess.run(["cmake", "--build", folder, "--target", "kestran_python"], check=True)
        built = os.path.join(folder, "kestran")
        package = os.path.dirname(self.get_ext_fullpath(ext.name))
        os.makedirs(package, exist_ok=True)
        for name in os.listdir(built):
            if name.endswith((".so", ".pyi")):
                shutil.copy(os.path.join(built, name), package)


def version():
    with open(os.path.join(ROOT, "CMakeLists.txt"), encoding="utf-8") as file:
        return re.search(r"project\(KESTRAN VERSION ([0-9.]+)", file.read()).group(1)


os.makedirs(os.path.join(ROOT, "build", "pip"), exist_ok=True)
setup(
    name="kestran",
    version=version(),
    description="Pricing of commodity, energy, foreign-exchange and interest-rate options",
    python_requires=">=3.9",
    install_requires=["numpy>=1.20"],
    packages=["kestran"],
    package_dir={"": SOURCES},
    package_data={"kestran": ["py.typed"]},
    ext_modules=[Extension("kestran._core", [])],
    cmdclass={"build_ext": Build},
    options={"build": {"build_base": "build/pip"}, "egg_info": {"egg_base": "build/pip"}},
)
