"""Repositories are mappings in Python, sequences of kernel objects sequences."""

import collections.abc

import pytest

import vexomu
from probe import names, numbers, row, shapes

QUAD = vexomu.Constant("QUAD")


def sizes(boxes):
    return [box.size for box in boxes]


def test_a_repository_is_a_mapping_of_its_kind_of_keys():
    assert isinstance(names, collections.abc.Mapping)
    for repository, keys in (names, ["a", "b"]), (numbers, [7, -1]), (shapes, [QUAD]):
        assert list(repository) == repository.keys() == keys
        assert len(repository) == len(keys) and all(key in repository for key in keys)
        assert sizes(repository.values()) == [repository[key].size for key in keys] == list(range(len(keys)))
        assert dict(repository) == dict(repository.items())
        assert repository.get("absent") is None and repository.get("absent", 5) == 5
        for absent in "c", "\ud800", 8, 7.5, 2**40, 2**70, None, []:
            assert absent not in repository
            with pytest.raises(KeyError) as caught:
                repository[absent]
            assert type(caught.value) is vexomu.KeyError
            assert str(caught.value) == f"no key {absent!r}"
            assert caught.value.name is absent and caught.value.obj is repository
    assert repr(names) == "names" and str(names) == "{'a': 'Box object', 'b': 'Box object'}"
    assert names.has_key("a") == 1 and names.changeKey("a", "c") == "ChangeKey NOT IMPLEMENTED"
    assert names.summary() == "UseKey"


def test_items_are_set_and_deleted_where_the_repository_lets_them(tmp_path):
    vexomu.startJournal(tmp_path / "journal.py")
    numbers[9] = 30
    assert numbers[9].size == 30 and list(numbers) == [7, -1, 9]
    box = numbers[9]
    del numbers[9]
    with pytest.raises(vexomu.AccessError):
        box.size
    with pytest.raises(vexomu.KeyError, match="no key 9"):
        del numbers[9]
    with pytest.raises(TypeError, match="has no keys like 'x'"):
        numbers["x"] = 1
    for refuse in (lambda: shapes.__setitem__(QUAD, 1), lambda: shapes.__delitem__(QUAD), lambda: numbers.__setitem__(1, "x")):
        with pytest.raises(TypeError, match="'vexomu.Repository' object does not support item"):
            refuse()
    rest = row[1:4]
    del rest[-1]
    del rest[1:]
    vexomu.stopJournal()
    assert (tmp_path / "journal.py").read_text().splitlines()[-4:] == [
        "numbers.__setitem__(9, 30)", "numbers.__delitem__(9)",
        "# <Sequence object>.__delitem__(2)", "# <Sequence object>.__delitem__(slice(1, 2))"]


def test_a_sequence_is_indexed_sliced_and_joined():
    assert isinstance(row, collections.abc.Sequence)
    assert len(row) == 5 and sizes(row) == [0, 1, 2, 3, 4] and row[-1].size == 4
    for index in 5, 6, 2**31, 2**70:
        with pytest.raises(IndexError, match=f"{index} out of range|cannot fit"):
            row[index]
    for part in slice(1, 3), slice(-2, None), slice(3, 1), slice(0, 99), slice(None, None, -2):
        assert sizes(row[part]) == list(range(5))[part]
    rest = row[1:] + row[:1]
    assert sizes(rest) == [1, 2, 3, 4, 0]
    del rest[-1]
    del rest[:2]
    assert sizes(rest) == [3, 4] and len(row) == 5
    assert row.count(row[0]) == 0  # each is an object of its own
    with pytest.raises(ValueError):
        row.index(row[0])
    for refuse in lambda: row * 2, lambda: row + [1], lambda: row.__setitem__(0, 1), lambda: row["x"]:
        with pytest.raises(TypeError):
            refuse()
