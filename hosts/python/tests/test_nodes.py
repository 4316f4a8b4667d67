"""Finding, iterating and errors with places."""
import pytest
import zon
from conftest import EXAMPLES


@pytest.fixture
def file():
    return zon.load(EXAMPLES / "harbour.zon")


def test_paths_lead_to_one_view(file):
    quay = file["Quay", 2]
    assert quay is file["Quay:2"] is file.section("quay", 2) is file.sections("Quay")[1] is list(file)[4]
    assert file["Quay:2/Berth/Draught"] is quay["Berth"]["Draught"] is quay["Berth"].keyword("Draught")
    assert (quay.name, quay.instance, quay.path, quay.owner, quay.file) == ("Quay", 2, "Quay:2", file, file)
    assert file["Run/Input:3[2]"] is file["Run"].keywords("Input")[2].children()[1]
    assert file["Run/Input:3[2]"].path == "Run/Input:3[2]"
    assert file[""] is file


def test_iteration(file):
    assert [section.name for section in file][2:] == ["Harbour", "Quay", "Quay", "QUAY", "Traffic", "Tariff"]
    assert len(file) == 8
    assert [each.kind.name for each in file["Traffic"].children()[1:4]] == ["KEYWORD", "KEYWORD", "SECTION"]
    assert file["Traffic"].children()[0].kind == zon.Kind.DEFINITION
    tolerance = file["Run/Tolerance"]
    assert list(tolerance) == tolerance.values() == [1e-3, 2.5e-6, 1e-4]
    assert (len(tolerance), tolerance[0], tolerance[-1], tolerance[1:]) == (3, 1e-3, 1e-4, [2.5e-6, 1e-4])
    assert 1e-4 in tolerance and 2 not in tolerance
    assert "Run/Step" in file and ("Quay", 3) in file and ("Quay", 4) not in file
    assert file["Quay:2"].sections("Crane") == file["Run"].sections() == []
    assert bool(file["Run"])


def test_what_a_node_is(file):
    step = file["Run"]["Step"]
    assert (step.remark, str(step.place)) == ("seconds", f"{file.name}:23:4")
    assert file["Run/Tolerance[3]"].remark == "relative"
    assert (step.to(float), float(step), int(step), step.values(float)) == (60.0, 60.0, 60, [60.0])
    assert file.find("Run/Steps") is None


ERRORS = [
    (lambda file: file["Pier"], zon.MissingError, " error: the file has no section `Pier`"),
    (lambda file: file["Quay", 4], KeyError, " error: the file has no section `Quay` with this number"),
    (lambda file: file["Run"]["Stp"], LookupError, "16:1: error: the section `Run` has no keyword `Stp`"),
    (lambda file: file["Run"]["Tolerance"][3], IndexError, "24:16: error: `Run/Tolerance` has no value at index 3"),
    (lambda file: file["Run"]["Step"]["x"], zon.KindError, "23:21: error: `Run/Step` is a keyword, not a section"),
    (lambda file: file["Run"]["Step"].sections(), zon.KindError, "23:21: error: `Run/Step` is a keyword"),
    (lambda file: file["Run"].value, TypeError, "16:1: error: `Run` is a section, not a keyword"),
    (lambda file: file["Run"][0], zon.KindError, "16:1: error: `Run` is a section, not a keyword"),
    (lambda file: file[5], zon.KindError, " error: this is a file, not a keyword"),
    (lambda file: file.keyword("Quay"), zon.KindError, "79:1: error: `Quay` is a section, not a keyword"),
    (lambda file: file["Run"].section("Step"), zon.MissingError, "16:1: error: the section `Run` has no section"),
    (lambda file: file["Run/Step"].to(str), zon.KindError, "23:21: error: the keyword `Step` is an integer"),
    (lambda file: file["Run/Tolerance"].values(int), zon.KindError, "24:16: error: the value is a real"),
    (lambda file: file["a//b"], ValueError, " error: `a//b` is no path here"),
    (lambda file: file["Quay", 0], zon.ArgumentError, " error: `Quay:0` is no path here"),
    (lambda file: file.remove(), zon.ArgumentError, " error: the file does not allow this call"),
]


@pytest.mark.parametrize("use, error, text", ERRORS)
def test_errors_have_places(file, use, error, text):
    with pytest.raises(error) as caught:
        use(file)
    assert isinstance(caught.value, zon.Error)
    assert str(caught.value).startswith(f"{file.name}:{text}")
    assert len(caught.value.reports) == 1


@pytest.mark.parametrize("use", [lambda file: file[1.5], lambda file: file["Run", "x"], lambda file: file["Run"].get(3),
                                 lambda file: file["Run/Step"].to(list), lambda file: bool(file["Run/Verbose"]),
                                 lambda file: None in file, lambda file: setattr(file["Run/Step"], "text", 5),
                                 lambda file: file["Run"].rename(5), lambda file: zon.parse(5),
                                 lambda file: zon.diff(file, 5), lambda file: zon.diff(file, file, key=5),
                                 lambda file: zon.validate("x.zon", file), lambda file: file.merge("x.zon")])
def test_wrong_types(file, use):
    with pytest.raises(TypeError) as caught:
        use(file)
    assert not isinstance(caught.value, zon.Error)


def test_an_error_of_the_program(file):
    error = file["Quay", 2]["Length"].error("longer than the harbour", "write at most 90")
    assert str(error) == (f"{file.name}:121:13: error: longer than the harbour\n   Length = 96.5\n            ^~~~\n"
                          "hint: write at most 90")
    assert error.reports[0].place.line == 121
    report = file["Run"].report("odd", severity=zon.Severity.NOTE, rule="odd")
    assert (report.rule, report.severity, report.text.splitlines()[0]) == ("odd", 2, f"{file.name}:16:1: note: odd")


def test_setting_creates_what_is_missing():
    file = zon.File()
    file["Quay/Length"] = 240.0
    file["Quay:2/Berth/Name"] = "east"
    quay = file["Quay"]
    quay["Bollard"] = [1, 25.0]
    quay["Bollard", 2] = 2
    quay["Bollard:2[2]"] = 12.5
    quay["Bollard"].append("old")
    quay["Bollard"][-1] = None
    quay.add_keyword("Bollard", [3])
    quay.add_section("Berth").add_keyword("Open")
    del quay["Length"], quay["Bollard"][0]
    assert [line.strip() for line in file.to_text().splitlines() if line] == [
        "[Quay]", "Bollard = 25.0,", "Bollard = 2, 12.5", "Bollard = 3", "[Berth]", "Open =", "EndSect  // Berth",
        "EndSect  // Quay", "[Quay]", "[Berth]", "Name = 'east'", "EndSect  // Berth", "EndSect  // Quay"]
    keyword = quay["Bollard", 2]
    keyword.rename("Ring")
    assert quay["Ring"] is keyword and "\n   Ring = 2, 12.5\n" in file.to_text()
    for change, error in ((lambda: file.__setitem__("Quay:4/x", 1), zon.MissingError),
                          (lambda: file.__setitem__("Quay/true", 1), zon.ArgumentError),
                          (lambda: file.__setitem__("x", 1), zon.ArgumentError),
                          (lambda: file.add_section("no name"), zon.ArgumentError),
                          (lambda: quay["Bollard"].__delitem__(5), zon.MissingError),
                          (lambda: file.__delitem__("Pier"), zon.MissingError),
                          (lambda: quay.rename("no/name"), zon.ArgumentError),
                          (lambda: quay.rename("A:1"), zon.ArgumentError),
                          (lambda: quay["Bollard[1]"].rename("x"), zon.KindError),
                          (lambda: quay["Bollard"].__setitem__(slice(0, 1), [1]), TypeError)):
        with pytest.raises(error):
            change()
