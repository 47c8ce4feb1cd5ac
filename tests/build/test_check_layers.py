"""The layer check names file, line and include of what it refuses, and refuses nothing else."""

import subprocess
import sys
from pathlib import Path

import pytest

CHECK = Path(__file__).parents[2] / "cmake" / "check_layers.py"
sys.path.insert(0, str(CHECK.parent))
import check_layers  # noqa: E402  (found beside the build's other modules)

HEADERS = {
    "platform/include": ["VEXCRT.h", "VEXutl_export.h", "thr_Lock.h", "omi_SingletonBase.h", "cow_List.h"],
    "source/include": ["VEXomu_export.h", "rgx_Match.h", "cls_Uid.h", "uti_Process.h", "omu_PrimType.h", "omi_Slot.h"],
    "source/omu/impl": ["call_detail.h"],
}

REFUSED = [
    ("platform/thr/impl/thr_Lock.cpp", "cow_List.h", "points up: layer thr stands below layer utl"),
    ("platform/include/omi_SingletonMaker.h", "cow_List.h", "points up: layer thr stands below layer utl"),
    ("platform/utl/impl/cow_List.cpp", "omu_PrimType.h", "points up: layer utl stands below layer omu"),
    ("platform/include/cow_Map.h", "omi_Slot.h", "points up: layer utl stands below layer rgx"),
    ("source/include/rgx_Split.h", "cls_Uid.h", "points up: layer rgx stands below layer cls"),
    ("source/cls/impl/cls_Uid.cpp", "uti_Process.h", "points up: layer cls stands below layer uti"),
    ("source/uti/impl/uti_Process.cpp", "omu_PrimType.h", "points up: layer uti stands below layer omu"),
    ("engines/sqlite/store.cpp", "omu_PrimType.h", "points up: layer cls stands below layer omu"),
    ("source/uti/impl/uti_File.cpp", "../../omu/impl/call_detail.h", "reaches into another folder"),
    ("source/uti/impl/uti_File.cpp", "unistd.h", "is the operating system's: only platform/ may use it"),
]

ACCEPTED = [
    ("platform/thr/impl/thr_Lock.cpp", "omi_SingletonBase.h"),
    ("platform/crt/impl/VEXCRT.cpp", "unistd.h"),
    ("source/include/omi_Pool.h", "cow_List.h"),
    ("source/include/cls_Array.h", "omi_Slot.h"),
    ("source/rgx/impl/rgx_Match.cpp", "VEXomu_export.h"),
    ("source/omu/impl/omu_Call.cpp", "call_detail.h"),
    ("source/omu/impl/omu_Call.cpp", "uti_Process.h"),
    ("source/omu/impl/omu_Call.cpp", "vector"),
]


@pytest.fixture
def tree(tmp_path):
    for folder, names in HEADERS.items():
        (tmp_path / folder).mkdir(parents=True)
        for name in names:
            (tmp_path / folder / name).touch()
    return tmp_path


def faults(root, path, include):
    source = root / path
    source.parent.mkdir(parents=True, exist_ok=True)
    source.write_text(f'#pragma once\n\n#  include "{include}"\n')
    return list(check_layers.faults(root))


@pytest.mark.parametrize("path, include, fault", REFUSED)
def test_an_include_that_breaks_a_rule_is_named_with_file_and_line(tree, path, include, fault):
    assert faults(tree, path, include) == [f'{path}:3: include of "{include}" {fault}']


@pytest.mark.parametrize("path, include", ACCEPTED)
def test_an_include_that_points_down_passes(tree, path, include):
    assert faults(tree, path, include) == []


def test_a_file_that_no_layer_owns_is_a_fault(tree):
    assert faults(tree, "source/include/odd.h", "vector") == ["source/include/odd.h:1: belongs to no layer"]


def test_a_fault_fails_the_build(tree):
    faults(tree, *REFUSED[0][:2])
    result = subprocess.run([sys.executable, CHECK, tree], capture_output=True, text=True)
    assert result.returncode == 1
    assert result.stderr.startswith("platform/thr/impl/thr_Lock.cpp:3: include of ")
