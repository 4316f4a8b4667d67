"""Views of nodes that were removed or replaced, and of closed files: an error, never a crash.

test_model compares random changes with a model of the tree. Run it with a library that has the address sanitizer,
by LD_PRELOAD, to see an address that is used too long.
"""
import copy
import gc
import pickle
import random
import signal
import sys
import weakref
from datetime import datetime

import pytest
import zon

TEXT = "[A] k = 1, 2.5, 'x'\n [B] k = 1 EndSect [B] k = 2 EndSect EndSect [A] k = 2 EndSect"


def expect_stale(*views):
    for view in views:
        for use in (lambda: view.kind, lambda: view.value, lambda: view.path, lambda: view.place, lambda: list(view),
                    lambda: view["k"], lambda: view.get("k"), lambda: view.error("x"), lambda: view.remove(),
                    lambda: view.__setitem__("k", 1), lambda: view.append(1)):
            with pytest.raises(zon.ClosedError):
                use()
        assert "removed" in repr(view) or "closed" in repr(view)


@pytest.fixture
def file():
    return zon.parse(TEXT)


def test_a_closed_file(file):
    views = [file, file["A"], file["A/B/k"], file["A/k[2]"]]
    with file:
        pass
    file.close()
    assert file.closed
    expect_stale(*views)
    for use in (file.__enter__, file.save, file.to_text, file.unread, file.watch):
        with pytest.raises(zon.ClosedError):
            use()


def test_a_removed_section_takes_what_is_in_it(file):
    section, inside, keyword, value, other = (file[path] for path in ("A/B:2", "A/B/k", "A:1/k", "A/k[1]", "A:2/k"))
    inner = file["A/B"]
    del file["A/B"]
    expect_stale(inner, inside)
    assert (section.path, section["k"].value) == ("A/B", 2)
    file["A"].remove()
    expect_stale(section, keyword, value)
    assert (other.path, other.value) == ("A/k", 2)
    # New nodes can get the addresses of the old ones.
    for _ in range(100):
        file.add_section("A")["k"] = [1, 2, 3]
    expect_stale(section, keyword, value, inside)


def test_a_replaced_value(file):
    first, second, third = file["A/k"].children()
    file["A/k"] = 7
    assert first.value == 7
    file["A/k"] = 7.5
    expect_stale(first)
    assert second.value == 2.5
    second.value = "a view follows its own change"
    assert (second.value, second.path) == ("a view follows its own change", "A/k[2]")
    file["A"]["k"] = [1, "same kind"]
    assert second.value == "same kind"
    expect_stale(third)
    del file["A/k"][0]
    assert (second.path, second.value) == ("A/k[1]", "same kind")
    file["A/k"].append(None)
    file["A/k"].text = "'x', 'y'"
    assert second.value == "x"
    third = file["A/k[2]"]
    file["A/k"][0] = zon.Raw("1, 2")  # two values
    expect_stale(third)


def test_removing_while_iterating(file):
    for section in file["A"]:
        section.remove()
    assert len(file["A"]) == 0
    names = []
    for section in file:
        names.append(section.name)
        for other in file.sections("A"):
            other.remove()
    assert names == ["A"]
    sections = iter(zon.parse(TEXT))
    section = next(sections)
    section.file.close()
    with pytest.raises(zon.ClosedError):
        section.value


def test_code_that_runs_within_a_call(file):
    def close_and_count():
        file["A"].remove()
        yield 1
        file.close()
        yield 2

    keyword = file["A/k"]
    with pytest.raises(zon.ClosedError):
        keyword[0] = close_and_count()
    assert file.closed


def test_a_change_within_a_call_is_refused(file):
    caught = []

    def handler(*_):
        for change in (file["A"].remove, lambda: file.__setitem__("A/k", 1), file.save, file.watch):
            try:
                change()
            except zon.Error as error:
                caught.append(error)
        file.close()

    before = signal.signal(signal.SIGUSR1, handler)
    try:
        with file._tree.lock:  # as within any use
            signal.raise_signal(signal.SIGUSR1)
    finally:
        signal.signal(signal.SIGUSR1, before)
    assert len(caught) == 4 and "interrupted" in str(caught[0])
    assert file.closed


def interrupted(function, count):
    """Calls a function, raises KeyboardInterrupt before a bytecode of the package, and returns whether it did."""
    counter = iter(range(count))

    def trace(frame, event, _):
        if "/zon/" in frame.f_code.co_filename:
            frame.f_trace_opcodes = True
            if event == "opcode" and next(counter, None) is None:
                sys.settrace(None)
                raise KeyboardInterrupt
            return trace

    sys.settrace(trace)
    try:
        function()
        return False
    except KeyboardInterrupt:
        return True
    finally:
        sys.settrace(None)


@pytest.mark.filterwarnings("ignore::pytest.PytestUnraisableExceptionWarning")
@pytest.mark.parametrize("change", [
    lambda file: file["A/B"].remove(), lambda file: setattr(file["A/k[2]"], "value", "other"),
    lambda file: file.merge(zon.parse("[A] k = 'a', 'b' EndSect")), lambda file: file["A"].add_section("B")])
def test_an_interrupted_change(change):
    is_interrupted, count = True, 0
    while is_interrupted:
        file = zon.parse(TEXT)
        views = [file[path] for path in ("A", "A/k", "A/k[1]", "A/k[2]", "A/k[3]", "A/B/k[1]")]
        is_interrupted = interrupted(lambda: change(file), count)
        for view in views:
            try:
                assert file.find(view.path) is view
            except zon.ClosedError:
                pass
        count += 5


def test_garbage_collection():
    file = zon.parse(TEXT)
    tree = weakref.ref(file._tree)
    value = file["A/B:2/k[1]"]
    del file
    assert value.file["A/k"].value == 1
    assert value.owner.owner.path == "A/B:2"
    del value
    assert tree() is None  # without a run of the collector
    cycle = [zon.parse(TEXT)["A"]]
    cycle.append(cycle)
    tree = weakref.ref(cycle[0]._tree)
    del cycle
    gc.collect()
    assert tree() is None


def test_no_copies(file):
    for make in (copy.copy, copy.deepcopy, pickle.dumps):
        with pytest.raises(TypeError):
            make(file["A"])
    with pytest.raises(zon.Error) as caught:
        file["none"]
    error = pickle.loads(pickle.dumps(caught.value))
    assert (type(error), str(error), error.reports) == (zon.MissingError, str(caught.value), caught.value.reports)


# ---- A model of the tree -----------------------------------------------------------------------------------

SCALARS = (lambda: random.randrange(9), random.random, lambda: random.random() < 0.5, lambda: random.choice("abc"),
           lambda: datetime(2031, 2, random.randrange(1, 28)), lambda: None)


class Model:
    """A node of the model. Of a value `name` is None and `content` the value."""

    def __init__(self, name, owner, content=()):
        self.name, self.owner, self.content = name, owner, content
        self.sections, self.keywords, self.values, self.is_there = [], [], [], True

    def lists(self):
        return self.sections, self.keywords, self.values

    def remove(self):
        for nodes in self.owner.lists():
            if self in nodes:
                nodes.remove(self)
        self.kill()

    def kill(self):
        self.is_there = False
        for nodes in self.lists():
            for node in nodes:
                node.kill()

    def path(self):
        if self.owner is None:
            return ""
        if self.name is None:
            return f"{self.owner.path()}[{self.owner.values.index(self) + 1}]"
        nodes = self.owner.sections if self in self.owner.sections else self.owner.keywords
        number = [node for node in nodes if node.name == self.name].index(self) + 1
        return f"{self.owner.path()}/{self.name}".lstrip("/") + (f":{number}" if number > 1 else "")

    def put(self, at, value):
        if at == len(self.values):
            self.values.append(Model(None, self, value))
        elif type(self.values[at].content) is type(value):
            self.values[at].content = value
        else:
            self.values[at].is_there = False
            self.values[at] = Model(None, self, value)

    def set(self, values):
        for at, value in enumerate(values or [None]):
            self.put(at, value)
        for node in self.values[len(values or [None]):]:
            node.remove()

    def everything(self):
        found, rest = [], [self]
        while rest:
            node = rest.pop()
            found.append(node)
            for nodes in node.lists():
                rest.extend(nodes)
        return found


def find(file, node):
    is_section = node.owner is not None and node in node.owner.sections
    return file[node.path() + "/" * is_section]


def change(file, root):
    """Makes one random change in both."""
    node = random.choice(root.everything())
    view = find(file, node)
    kind = view.kind
    value = random.choice(SCALARS)()
    values = [random.choice(SCALARS)() for _ in range(random.randrange(4))]
    if kind != zon.Kind.FILE and random.random() < 0.3:
        view.remove()
        node.remove()
    elif kind == zon.Kind.KEYWORD and random.random() < 0.5:
        view.owner[node.name, view.instance] = values
        node.set(values)
    elif kind == zon.Kind.KEYWORD:
        view.append(value)
        node.put(len(node.values), value)
    elif kind not in (zon.Kind.FILE, zon.Kind.SECTION) and random.random() < 0.5:
        view.value = value
        node.content = value
    elif kind not in (zon.Kind.FILE, zon.Kind.SECTION):
        file[node.path()] = value
        node.owner.put(node.owner.values.index(node), value)
    elif kind == zon.Kind.FILE or random.random() < 0.5:
        view.add_section(name := random.choice("AB"))
        node.sections.append(Model(name, node))
    else:
        view.add_keyword(name := random.choice("AB"), values)
        node.keywords.append(Model(name, node))
        node.keywords[-1].set(values)


@pytest.mark.parametrize("seed", range(8))
def test_model(seed):
    random.seed(seed)
    file, root = zon.File(), Model("", None)
    held = []
    for _ in range(100):
        change(file, root)
        nodes = root.everything()
        held = random.sample(held, min(len(held), 20))
        held += [(find(file, node), node) for node in random.sample(nodes, min(len(nodes), 3))]
        for view, node in held:
            if not node.is_there:
                expect_stale(view)
            elif node.name is None:
                assert view.value == node.content
            else:
                assert view.path == node.path()
                assert [each.content for each in node.values] == (view.values() if node.values else [])
    assert zon.parse(file.to_text()).to_text(plain=True) == file.to_text()
