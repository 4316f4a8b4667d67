"""Values from a file to Python and back."""
from datetime import date, datetime, timedelta, timezone
from pathlib import Path, PurePosixPath

import pytest
import zon

# As written in a file, and in Python. Both directions, unless the third is another text that Python writes.
VALUES = [
    ("-9223372036854775808", -2**63, None),
    ("+007", 7, "7"),
    ("1.5e3", 1500.0, "1500.0"),
    ("1e+300", 1e300, None),
    ("TRUE", True, "true"),
    ("'it''s\n // no comment'", "it's\n // no comment", None),
    ("''", "", None),
    ("|/srv/a b.csv|", Path("/srv/a b.csv"), None),
    ("#2031-02-14 06:15:00#", datetime(2031, 2, 14, 6, 15), None),
    ("#2031-02-14T06:15:00.25Z#", datetime(2031, 2, 14, 6, 15, 0, 250000, timezone.utc),
     "#2031-02-14 06:15:00.250000+00:00#"),
    ("#2031-02-14 06:15 -0330#", datetime(2031, 2, 14, 6, 15, tzinfo=timezone(-timedelta(hours=3, minutes=30))),
     "#2031-02-14 06:15:00-03:30#"),
    ("#2031-02-14#", datetime(2031, 2, 14), "#2031-02-14 00:00:00#"),
    ("#2031-02-30#", zon.Raw("#2031-02-30#"), None),
    ("#noon#", zon.Raw("#noon#"), None),
    ("%cores", zon.Raw("%cores"), None),
    ("'<CLOB:Integer:1>'", zon.Raw("'<CLOB:Integer:1>'"), None),
    ("", None, None),
]


@pytest.mark.parametrize("text, value, again", VALUES)
def test_read_and_set(text, value, again):
    keyword = zon.parse(f"[S] k = {text} EndSect")["S"]["k"]
    assert keyword.value == value
    assert type(keyword.value) is type(value)
    assert keyword.text == text
    keyword.text = "'other', 2 {kept}"
    keyword.value = value
    assert keyword.text == (text if again is None else again) + ", 2"
    assert keyword.children()[1].remark == "kept"


@pytest.mark.parametrize("values, text", [
    ([1, -2], "1, -2"),
    ((0.1, 1e22), "0.1, 1e+22"),
    ([True, False], "true, false"),
    (["a", "b'"], "'a', 'b'''"),
    ([1, 2.5, "x", Path("a.csv"), None, date(2031, 2, 14), zon.Raw("%1")], "1, 2.5, 'x', |a.csv|, , #2031-02-14#, %1"),
    ((n * n for n in range(3)), "0, 1, 4"),
    ([], ""),
])
def test_set_list(values, text):
    file = zon.parse("[S] k = 1, 2, 3 EndSect")
    file["S/k"] = values
    assert file["S/k"].text == text
    file["S"]["copy"] = file["S"]["k"]
    assert file["S/copy"].text == text


@pytest.mark.parametrize("value, error", [
    (2**63, zon.RangeError), (float("nan"), zon.RangeError), ([1.5, float("inf")], zon.RangeError),
    ([2**63, "a"], zon.RangeError), ("a\0b", zon.ArgumentError), ("\ud800", zon.ArgumentError),
    (Path("a\0b"), zon.ArgumentError), (zon.Raw("1 EndSect"), zon.Error), (zon.Raw("'"), zon.Error),
    (b"bytes", TypeError), ({"a": 1}, TypeError), ([[1]], TypeError), (1j, TypeError),
])
def test_refused(value, error):
    file = zon.parse("[S] k = 1, 2 EndSect")
    with pytest.raises(error):
        file["S/k"] = value
    assert file["S/k"].text == "1, 2"


GET = "[S] i = 60\n r = 2.5\n big = 5000000000000000000000\n b = true\n s = 'x'\n f = |/a|\n d = #2031-02-14#\n" \
      " list = 1, 2.5\n hole = 1, , 3\n empty =\n EndSect"


@pytest.mark.parametrize("path, default, value", [
    ("S/i", 4, 60), ("S/i", 4.0, 60.0), ("S/r", 4.0, 2.5), ("S/b", False, True), ("S/s", "y", "x"),
    ("S/f", PurePosixPath("b"), Path("/a")), ("S/d", datetime(1, 1, 1), datetime(2031, 2, 14)),
    ("S/list", [0.0], [1.0, 2.5]), ("S/list", [], [1, 2.5]), ("S/list[2]", 1.0, 2.5), ("S/list", None, 1),
    ("S/list", (0.0,), [1.0, 2.5]), ("S/none", 4, 4), ("S/none", [4], [4]), ("S/empty", "y", "y"),
    ("S/empty", [4], [4]), ("S/empty", None, None),
    ("T/x/y", None, None), (("S", 2), "y", "y"),
])
def test_get(path, default, value):
    found = zon.parse(GET).get(path, default)
    assert found == value
    assert type(found) is type(value)


@pytest.mark.parametrize("path, default, error, place", [
    ("S/r", 4, zon.KindError, "2:6"), ("S/i", "y", zon.KindError, "1:9"), ("S/i", True, zon.KindError, "1:9"),
    ("S/big", 4, zon.RangeError, "3:8"), ("S/list", [4], zon.KindError, "8:12"), ("S", 4, zon.KindError, "1:1"),
    ("S/hole", [4], zon.MissingError, "9:11"), ("S", None, zon.KindError, "1:1"), ("S/i", [""], zon.KindError, "1:9"),
    ("S/d", 4, zon.KindError, "7:6"), ("S//i", 4, zon.ArgumentError, ""), ("S/i[0]", None, zon.ArgumentError, "1:5"),
])
def test_get_refused(path, default, error, place):
    with pytest.raises(error) as caught:
        zon.parse(GET, "get.zon").get(path, default)
    assert str(caught.value).startswith(f"get.zon:{place}{':' if place else ''} error:")


def test_bytes_that_are_no_utf8(tmp_path):
    name = tmp_path / "caf\udce9.zon"
    name.write_bytes(b"[S] k = 'caf\xe9' {\xff}\n f = |\xe9.csv| EndSect")
    with zon.load(name) as file:
        assert file["S/k"].value == "caf\udce9"
        assert file["S/k[1]"].remark == "\udcff"
        assert file["S/f"].value == tmp_path / "\udce9.csv"
        with pytest.raises(zon.KindError) as caught:
            file["S/k"].to(int)
        assert "[S] k = 'caf\ufffd'" in str(caught.value)  # it can be printed
        file["S/k"].append("\udce8")
        file.save()
    assert name.read_bytes() == b"[S] k = 'caf\xe9' {\xff}, '\xe8'\n f = |\xe9.csv| EndSect"


def test_zero_in_a_loaded_text():
    # What follows a zero is not loaded.
    assert zon.parse("[S] k = 'a\0b' EndSect")["S/k"].value == "a"


def test_numpy():
    numpy = pytest.importorskip("numpy")
    file = zon.parse("[S] i = 1, -2\n r = 1, 2.5\n b = true, false\n s = 'a', 'bc'\n"
                     " hole = 1,\n mixed = 1, 'a' EndSect")
    for name, kind, values in (("i", "i", [1, -2]), ("r", "f", [1, 2.5]), ("b", "b", [True, False]),
                               ("s", "U", ["a", "bc"])):
        array = file["S"][name].array()
        assert array.dtype.kind == kind
        assert array.tolist() == values
    assert numpy.asarray(file["S/i"], float).tolist() == [1.0, -2.0]
    for name, error in (("hole", zon.MissingError), ("mixed", zon.KindError)):
        with pytest.raises(error):
            file["S"][name].array()
    assert file.get("S/r", numpy.array([0.0])) == [1.0, 2.5]
    with pytest.raises(zon.KindError):
        file.get("S/s", numpy.int64(1))
    for value, text in ((numpy.array([7, 8], numpy.int16), "7, 8"), (numpy.float32(0.1), "0.1, 8"),
                        ([numpy.bool_(False)], "false"), (numpy.array([0.1, 2], numpy.float32), "0.1, 2.0"),
                        (numpy.datetime64("2031-02-14T06:15", "ns"), "#2031-02-14 06:15:00#, 2.0")):
        file["S/i"] = value
        assert file["S/i"].text == text
