"""Two files: validating, comparing and merging."""
import pytest
import zon
from conftest import EXAMPLES


def test_diff():
    before = zon.parse("[A] k = 1, 2, 3 [B] n = 'x' v = 1.0 EndSect [B] n = 'y' v = 2 EndSect EndSect [C] EndSect")
    after = zon.parse("[A] k = 1, 2.5, 3, 4 [B] n = 'y' v = 2 EndSect [B] n = 'x' v = 1.01 EndSect EndSect [D] EndSect")
    found = zon.diff(before, after, key="n")
    assert {str(each) for each in found if each.change != zon.Change.MOVED} == {
        "A/k[2]: different 2 -> 2.5", "A/k[4]: added 4", "A/B:2/v[1]: different 1.0 -> 1.01", "C: removed", "D: added"}
    by_path = {each.path: each for each in found}
    assert by_path["A/B:2/v[1]"].before.path == "A/B/v[1]"
    assert by_path["A/k[4]"].before is None and by_path["A/k[4]"].after is after["A/k[4]"]
    assert by_path["C"].change == zon.Change.REMOVED and by_path["C"].before is before["C"]
    assert "A/B:2/v[1]" not in [each.path for each in zon.diff(before, after, key="n", absolute=0.1)]
    assert zon.diff(before["A/B:2"], after["A/B"]) == zon.diff(before, before) == []
    for first, second, options in ((before, after["A"], {}), (before, after, {"relative": -1.0})):
        with pytest.raises(zon.ArgumentError):
            zon.diff(first, second, **options)


def test_diff_of_definitions():
    before, after = (zon.parse(f"[A] default (x) = {n}, 2 default (y) = 3 x = 1 EndSect") for n in (1, 7))
    found, = zon.diff(before, after)
    assert (found.before.owner.kind, found.before.value, found.after.value) == (zon.Kind.DEFINITION, 1, 7)


def test_merge():
    target = zon.parse("[A] default (x) = 1 k = 1, 2, 3 // comment\n EndSect")
    overlay = zon.parse("[A] default (x) = 2 k = 1, 'x' EndSect [B] k = 1 EndSect")
    first, second, third = target["A/k"].children()
    keyword, definition = target["A/k"], target["A"].children()[0]
    target.merge(overlay)
    assert (keyword.values(), first.value, target["B/k"].value) == ([1, "x"], 1, 1)
    for stale in (second, third, definition):
        with pytest.raises(zon.ClosedError):
            stale.value
    assert "// comment" in target.to_text()
    zon.merge(target, target)
    overlay.close()
    with pytest.raises(zon.ClosedError):
        zon.merge(target, overlay)


def test_validate():
    with zon.load(EXAMPLES / "harbour-template.zon") as template:
        with zon.load(EXAMPLES / "harbour.zon") as file:
            assert zon.validate(template, file) == []
        with zon.load(EXAMPLES / "harbour-mismatch.zon") as file:
            reports = zon.validate(template, file)
            assert {report.place.file for report in reports} == {file.name}
            assert {report.related.file for report in reports if report.related} == {template.name}
