"""Builds the wheel of the package zon: zon_build.py FOLDER [LIBRARY], or prints its metadata: zon_build.py

With a library, which the environment variable ZON_LIBRARY can name too, the wheel carries it and is for systems like
the one it is built on; without one it is for any system that has libzon.so.0. `pip wheel` calls build_wheel. The file
is the same for the same sources: dates are left out."""
import base64
import hashlib
import os
import platform
import re
import sys
import zipfile
from pathlib import Path

HERE = Path(__file__).resolve().parent
SOURCE = HERE.parents[1]
METADATA = """Metadata-Version: 2.1
Name: zon
Version: {version}
Summary: Reads, changes and saves zon parameter files
License: MIT
Requires-Python: >=3.9
Provides-Extra: numpy
Requires-Dist: numpy; extra == "numpy"
"""


def version():
    """The version of the library, from its header."""
    header = (SOURCE / "api" / "zon.h").read_text()
    return ".".join(re.findall(r"^#define ZON_VERSION_\w+ (\d+)", header, re.M))


def metadata():
    """What installers show of the package."""
    return METADATA.format(version=version())


def platform_tag():
    """The tag of this system: a system that is as new has the C and C++ libraries that the library needs."""
    name, number = platform.libc_ver()
    machine = platform.machine()
    return f"manylinux_{number.replace('.', '_')}_{machine}" if name == "glibc" else f"linux_{machine}"


def contents(library):
    """The files of the wheel by their names in it."""
    package = HERE / "src" / "zon"
    files = {f"zon/{path.name}": path.read_bytes() for path in sorted(package.iterdir()) if path.is_file()}
    if library:
        files["zon/libzon.so.0"] = Path(library).read_bytes()
    info = f"zon-{version()}.dist-info"
    tag = f"py3-none-{platform_tag() if library else 'any'}"
    wheel = f"Wheel-Version: 1.0\nGenerator: zon_build\nRoot-Is-Purelib: {str(not library).lower()}\nTag: {tag}\n"
    files[f"{info}/METADATA"] = metadata().encode()
    files[f"{info}/LICENSE"] = (SOURCE / "LICENSE").read_bytes()
    files[f"{info}/WHEEL"] = wheel.encode()
    lines = [f"{name},{hash_of(data)},{len(data)}\n" for name, data in files.items()]
    files[f"{info}/RECORD"] = "".join([*lines, f"{info}/RECORD,,\n"]).encode()
    return tag, files


def hash_of(data):
    """The hash of a file as RECORD has it."""
    digest = base64.urlsafe_b64encode(hashlib.sha256(data).digest())
    return "sha256=" + digest.rstrip(b"=").decode()


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    """Writes the wheel and returns its name, as PEP 517 wants it."""
    library = (config_settings or {}).get("library") or os.environ.get("ZON_LIBRARY")
    tag, files = contents(library)
    name = f"zon-{version()}-{tag}.whl"
    with zipfile.ZipFile(Path(wheel_directory) / name, "w", zipfile.ZIP_DEFLATED) as archive:
        for path, data in files.items():
            entry = zipfile.ZipInfo(path)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.external_attr = 0o644 << 16
            archive.writestr(entry, data)
    return name


if __name__ == "__main__":
    if len(sys.argv) == 1:
        print(metadata(), end="")
    else:
        print(build_wheel(sys.argv[1], {"library": sys.argv[2]} if len(sys.argv) == 3 else None))
