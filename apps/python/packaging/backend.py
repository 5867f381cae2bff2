"""Builds the Python package for pip: CMake makes it, and this puts it into a wheel (PEP 517, without dependencies).

    pip install .
    pip install . --config-settings build-dir=build/release      # of a build that is there: nothing is compiled

The wheel is for this interpreter and this machine: it uses the shared libraries of the system.
"""
import base64
import hashlib
import io
import os
import pathlib
import re
import subprocess
import sys
import sysconfig
import tarfile
import tempfile
import zipfile

ROOT = pathlib.Path(__file__).resolve().parents[3]
VERSION = re.search(r"^project\(\S+ VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text(encoding="utf-8"), re.M)[1]
NAME = f"korvana-{VERSION}"
METADATA = f"""Metadata-Version: 2.1
Name: korvana
Version: {VERSION}
Summary: Survival analysis: life tables, Kaplan-Meier, comparisons of samples, Cox and parametric regression
License: GPL-3.0-or-later
Requires-Python: >=3.10
Provides-Extra: pandas
Requires-Dist: pandas; extra == "pandas"
"""
TAG = "cp{0}{1}-cp{0}{1}-".format(*sys.version_info) + re.sub(r"[-.]", "_", sysconfig.get_platform())
WHEEL = f"Wheel-Version: 1.0\nGenerator: korvana\nRoot-Is-Purelib: false\nTag: {TAG}\n"


def cmake(*arguments):
    """Runs CMake; its messages are seen with pip's -v, and in any case when it fails."""
    try:
        subprocess.run(["cmake", *map(str, arguments)], check=True, cwd=ROOT)
    except FileNotFoundError:
        sys.exit("cmake is not installed; scripts/setup.sh installs what the project is built with")


def built():
    """The folder of a build of the package for this interpreter."""
    folder = ROOT / "build" / f"wheel-{sys.version_info[0]}.{sys.version_info[1]}"
    generator = [] if (folder / "CMakeCache.txt").exists() else ["-G", "Ninja"]
    cmake("-S", ROOT, "-B", folder, *generator, "-DCMAKE_BUILD_TYPE=Release", "-DKORVANA_TESTS=OFF",
          "-DKORVANA_PYTHON=ON", f"-DPython3_EXECUTABLE={sys.executable}")
    cmake("--build", folder, "--target", "korvana-python-package")
    return folder


def files_of_package(build):
    """The files of the package by their names in the wheel."""
    with tempfile.TemporaryDirectory() as stage:
        cmake("--install", build, "--component", "wheel", "--prefix", stage)
        files = {path.relative_to(stage).as_posix(): path.read_bytes()
                 for path in sorted(pathlib.Path(stage).rglob("*")) if path.is_file()}
    extension = "korvana/_korvana" + sysconfig.get_config_var("EXT_SUFFIX")
    if extension not in files:
        sys.exit(f"the build in {build} has the package for another interpreter than {sys.executable}: there is no "
                 f"{extension}")
    return files


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    """Makes the wheel and returns its name. The setting build-dir names a build that is there."""
    given = (config_settings or {}).get("build-dir")
    files = files_of_package((ROOT / given) if given else built())
    info = f"{NAME}.dist-info"
    files[f"{info}/METADATA"] = METADATA.encode()
    files[f"{info}/WHEEL"] = WHEEL.encode()
    for path in [ROOT / "LICENSE", *sorted((ROOT / "LICENSES").iterdir())]:
        files[f"{info}/licenses/{path.name}"] = path.read_bytes()
    record = []
    for name, content in files.items():
        digest = base64.urlsafe_b64encode(hashlib.sha256(content).digest()).rstrip(b"=").decode()
        record.append(f"{name},sha256={digest},{len(content)}\n")
    files[f"{info}/RECORD"] = "".join([*record, f"{info}/RECORD,,\n"]).encode()
    wheel = f"{NAME}-{TAG}.whl"
    with zipfile.ZipFile(os.path.join(wheel_directory, wheel), "w", zipfile.ZIP_DEFLATED) as archive:
        for name, content in files.items():
            archive.writestr(zipfile.ZipInfo(name), content, zipfile.ZIP_DEFLATED)
    return wheel


def build_sdist(sdist_directory, config_settings=None):
    """Makes an archive of the sources that are under version control and returns its name."""
    names = subprocess.run(["git", "ls-files", "-z"], check=True, cwd=ROOT, stdout=subprocess.PIPE).stdout
    archive = os.path.join(sdist_directory, f"{NAME}.tar.gz")
    with tarfile.open(archive, "w:gz", format=tarfile.PAX_FORMAT) as tar:
        for name in filter(None, names.decode().split("\0")):
            tar.add(ROOT / name, f"{NAME}/{name}")
        info = tarfile.TarInfo(f"{NAME}/PKG-INFO")
        info.size = len(METADATA.encode())
        tar.addfile(info, io.BytesIO(METADATA.encode()))
    return os.path.basename(archive)
