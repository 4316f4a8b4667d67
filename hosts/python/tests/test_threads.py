"""Files in several threads, and the lock of the interpreter."""
import sys
import threading
import time

import pytest
import zon
from conftest import EXAMPLES


def run(*functions):
    """Runs each in a thread and raises the first failure."""
    failures = []

    def guarded(function):
        try:
            function()
        except BaseException as failure:
            failures.append(failure)

    threads = [threading.Thread(target=guarded, args=(function,)) for function in functions]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    if failures:
        raise failures[0]


@pytest.fixture(autouse=True)
def fast_switches():
    before = sys.getswitchinterval()
    sys.setswitchinterval(1e-5)
    yield
    sys.setswitchinterval(before)


def test_two_files():
    def use(name):
        for n in range(200):
            with zon.parse(f"[S] k = {n}, '{name}' {{{name}}}\n f = |{name}.csv| EndSect") as file:
                # The library keeps these texts for each thread.
                assert file["S/k"].text == f"{n}, '{name}'"
                assert file["S/f"].value.name == f"{name}.csv"
                assert file["S/k[2]"].remark == name
                with pytest.raises(zon.KindError) as caught:
                    file["S/k"].values(int)
                assert name in str(caught.value)

    run(*(lambda name=name: use(name) for name in "abcd"))


def test_one_file():
    file = zon.parse("[S] k = 0 EndSect")
    count = 300

    def edit(name):
        for n in range(count):
            file["S"].add_section(name)["k"] = n
            file["S"]["k"].append(n)
            value = file["S"].section(name)["k[1]"]
            assert value.value == n
            del file["S"][name + "/"]
            with pytest.raises(zon.ClosedError):
                value.value

    def read():
        for _ in range(count):
            with zon.parse(file.to_text()) as copy:
                assert copy["S/k"][0] == 0

    run(lambda: edit("a"), lambda: edit("b"), read)
    assert len(file["S/k"]) == 2 * count + 1


def test_closing_in_another_thread():
    for _ in range(50):
        file = zon.load(EXAMPLES / "harbour.zon")

        def use():
            with pytest.raises(zon.ClosedError):
                while True:
                    for section in file:
                        section.get("Length")

        run(use, file.close)


def test_the_lock_of_the_interpreter_is_released(tmp_path):
    text = "[S]\n" + "k = 1, 2.5, 'text'\n" * 20000 + "EndSect\n"
    name = tmp_path / "large.zon"
    name.write_text(text)
    files = []
    for call in (lambda: files.append(zon.parse(text)), lambda: files.append(zon.load(name)),
                 lambda: files[0].save(name, overwrite=True, plain=True), lambda: zon.diff(*files)):
        times = []
        done = threading.Event()

        def tick():
            while not done.is_set():
                times.append(time.perf_counter())

        def use():
            begin = time.perf_counter()
            call()
            end = time.perf_counter()
            done.set()
            # The first and the last tenth are left to what Python itself does.
            limits = begin * 0.9 + end * 0.1, begin * 0.1 + end * 0.9
            assert sum(limits[0] < each < limits[1] for each in times) > 10

        run(tick, use)


def test_two_trees_are_locked_in_one_order(tmp_path):
    first, second = zon.parse("[A] k = 1 EndSect"), zon.parse("[A] k = 2 EndSect")
    run(lambda: [zon.diff(first, second) for _ in range(200)], lambda: [zon.diff(second, first) for _ in range(200)])
