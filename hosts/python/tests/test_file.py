"""Loading, checking, saving and comparing files."""
import errno
import os
import subprocess
import sys
from pathlib import Path

import pytest
import zon
from conftest import EXAMPLES


def test_save_keeps_everything_else(harbour):
    text = harbour.read_bytes()
    with zon.load(harbour) as file:
        file["Quay", 2]["Length"] = 97.5
        file["Run/Tolerance[2]"].value = 1e-6
        file.save(backup=True)
        file.save()
        assert file["Quay", 2]["Length"].place.line == 121
    assert harbour.read_bytes() == text.replace(b"96.5", b"97.5").replace(b"2.5E-6", b"1e-06")
    assert Path(f"{harbour}~").read_bytes() == text


def test_save_to_a_name(harbour, tmp_path):
    with zon.parse("[A] f = |a.csv| EndSect") as file, zon.load(harbour) as other:
        assert (file.filename, file.name) == (None, "")
        with pytest.raises(zon.ArgumentError, match="no name yet"):
            file.save()
        name = tmp_path / "new.zon"
        file.save(name, new=True)
        assert file.filename == name
        for use, status in ((lambda: file.save(str(name), new=True), zon.Status.EXISTS),
                            (lambda: other.save(name), zon.Status.CHANGED)):
            with pytest.raises(zon.Error) as caught:
                use()
            assert caught.value.status == status
        with pytest.raises(FileExistsError):
            file.save(name, new=True)
        other.save(name, overwrite=True, names_as_written=True)
        name.write_text("[A] EndSect")
        with pytest.raises(zon.Error) as caught:
            other.save()
        assert caught.value.status == zon.Status.CHANGED
        file["A/k"] = "<CLOB:Integer:1>"
        with pytest.raises(zon.Error) as caught:
            file.to_text()
        assert caught.value.status == zon.Status.UNWRITABLE
        del file["A/k"]
        with pytest.raises(OSError) as caught:
            file.save(tmp_path / "none" / "a.zon")
        assert isinstance(caught.value, zon.FileError)


def test_files_that_do_not_load(tmp_path):
    for name, error, number in (("none.zon", FileNotFoundError, errno.ENOENT), ("", IsADirectoryError, errno.EISDIR)):
        with pytest.raises(zon.FileError) as caught:
            zon.load(tmp_path / name)
        assert caught.value.errno == number
        assert caught.value.filename == str(tmp_path / name)
        assert error is not FileNotFoundError or isinstance(caught.value, error)
        assert [report.rule for report in zon.check(tmp_path / name)] == ["cannot-open"]
    with pytest.raises(ValueError):
        zon.load("a\0b")
    with pytest.raises(TypeError):
        zon.load(3)


def test_a_faulty_text():
    text = "[Quay]\n   Name = North\n   Length = 240.0 metres\n   Bollard = 1;25.0\nEndSect\n"
    with pytest.raises(zon.Error) as caught:
        zon.parse(text, "quay.zon")
    assert caught.value.status == zon.Status.FAULTY
    assert [(report.rule, report.place.line, report.severity.name) for report in caught.value.reports] == [
        ("bad-value", 2, "ERROR"), ("word-after-value", 3, "ERROR"), ("glued-comment", 4, "WARNING")]
    assert str(caught.value).startswith("quay.zon:2:11: error:")
    report = zon.check(EXAMPLES / "harbour-faulty.zon")[0]
    assert (report.source_line, report.related.line) == ("   Input = 'weather',  |data\\weather\\tuesday.csv", 10)
    assert str(report).splitlines()[1] == report.source_line
    assert zon.check(EXAMPLES / "harbour-plain.zon") == []
    assert [each.rule for each in zon.parse(b"[S] k = 5000000000 EndSect").reports] == ["integer-range"]


def test_unread():
    file = zon.parse("[Run]\n Step = 60\n Tolerence = 1e-3\nEndSect\n", "run.zon")
    file.watch()
    assert file.get("Run/Step", 30.0) == 60 and file.get("Run/Tolerance") is None
    report, = file.unread()
    assert (report.place.line, report.hint) == (3, "the program asked for Tolerance")
    file.watch(False)
    with pytest.raises(zon.MissingError, match="call watch"):
        file.unread()


def test_the_library_is_missing():
    run = subprocess.run([sys.executable, "-c", "import zon"], capture_output=True, text=True,
                         env={**os.environ, "ZON_LIBRARY": "/none/libzon.so.0"})
    assert "ImportError: the package zon needs the library /none/libzon.so.0" in run.stderr
