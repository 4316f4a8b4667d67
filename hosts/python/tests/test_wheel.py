"""The wheel: built, installed without network, and used. It carries the library that the tests run with."""
import importlib.util
import os
import subprocess
import sys
from pathlib import Path

import pytest
from conftest import EXAMPLES

HOST = Path(__file__).parents[1]
pytestmark = [
    pytest.mark.skipif(importlib.util.find_spec("ensurepip") is None, reason="python3-venv is not installed"),
    pytest.mark.skipif("LD_PRELOAD" in os.environ, reason="pip does not run with a sanitizer"),
]


def run(*command, **environment):
    environment = {**os.environ, **environment}
    environment.pop("PYTHONPATH", None)
    return subprocess.run(command, env=environment, check=True, capture_output=True, text=True).stdout


def test_wheel(tmp_path, harbour):
    run(sys.executable, "-m", "venv", tmp_path / "env")
    python = tmp_path / "env" / "bin" / "python"
    pip = [python, "-m", "pip", "--disable-pip-version-check"]
    run(*pip, "wheel", "--no-index", "-w", tmp_path, HOST)
    wheel, = tmp_path.glob("zon-*.whl")
    assert "linux" in wheel.name
    run(*pip, "install", "--no-index", wheel)
    folder = run(python, "-c", "import zon; print(zon.__path__[0])", ZON_LIBRARY="").strip()
    assert folder.startswith(str(tmp_path)) and (Path(folder) / "py.typed").exists()
    maps = run(python, "-c", "import zon; print(open('/proc/self/maps').read())", ZON_LIBRARY="")
    assert f"{folder}/libzon.so.0" in maps
    run(python, EXAMPLES / "hosts" / "run.py", harbour, ZON_LIBRARY="")
    assert "Length = 98.25\n" in harbour.read_text()
