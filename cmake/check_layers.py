"""Refuses includes that point up the layers, and operating-system headers outside platform/.

usage: check_layers.py <root of the source tree>
Prints one line per offending include, as a compiler would, and exits with 1 if there are any.
"""

import re
import sys
from pathlib import Path

LAYERS = ["crt", "thr", "utl", "rgx", "cls", "uti", "omu"]

# What a public header is named after tells its layer; the first pattern that fits counts.
HEADER_LAYERS = [
    (re.compile(pattern), layer)
    for pattern, layer in [
        (r"VEX(CRT|crt)", "crt"),
        (r"VEXthr|thr_|omi_Singleton", "thr"),
        (r"VEXutl|(cow|nex|typ|obj|bio|pnt|utl|omn|omi)_", "utl"),
        (r"VEXomu|rgx_", "rgx"),  # VEXomu_export.h serves all layers of the library, so it stands with the lowest
        (r"cls_", "cls"),
        (r"uti_", "uti"),
        (r"omu_", "omu"),
    ]
]

# Files that are no public headers: the folder tells the highest layer they may use.
FOLDER_LAYERS = {
    **{f"platform/{layer}": layer for layer in LAYERS[:3]},
    **{f"source/{layer}": layer for layer in LAYERS[3:]},
    "engines/sqlite": "cls",
}

INCLUDE = re.compile(r'\s*#\s*include\s*["<]([^">]+)[">]')
SYSTEM_HEADER = re.compile(r"(sys|linux|arpa|netinet)/|(unistd|pthread|dlfcn|fcntl|spawn|poll|windows|process|io)\.h$")


def header_layer(name: str, folder: str = "") -> "str | None":
    if folder == "source/include" and re.match(r"omi_(?!Singleton)", name):
        return "rgx"  # class templates for every layer of VEXomu, which may use all of the platform
    return next((layer for pattern, layer in HEADER_LAYERS if pattern.match(name)), None)


def file_layer(path: str) -> "str | None":
    folder, _, name = path.rpartition("/")
    if folder in ("platform/include", "source/include"):
        return header_layer(name, folder)
    return next((layer for start, layer in FOLDER_LAYERS.items() if path.startswith(start + "/")), None)


def include_fault(root: Path, path: str, layer: str, include: str) -> "str | None":
    """Says what is wrong with an include, or gives None."""
    if ".." in Path(include).parts:
        return "reaches into another folder"
    if SYSTEM_HEADER.match(include):
        return None if path.startswith("platform/") else "is the operating system's: only platform/ may use it"
    if (root / path).parent.joinpath(include).is_file() and "/include/" not in path:
        return None  # a helper of the same layer
    folder = "source/include" if (root / "source/include" / include).is_file() else "platform/include"
    target = header_layer(include, folder)
    if target and LAYERS.index(target) > LAYERS.index(layer):
        return f"points up: layer {layer} stands below layer {target}"
    return None


def faults(root: Path):
    for source in sorted(p for top in ("platform", "source", "engines") for p in (root / top).rglob("*")):
        if source.suffix not in (".h", ".cpp"):
            continue
        path = source.relative_to(root).as_posix()
        layer = file_layer(path)
        if layer is None:
            yield f"{path}:1: belongs to no layer"
            continue
        for number, line in enumerate(source.read_text(encoding="utf-8").splitlines(), 1):
            if match := INCLUDE.match(line):
                if fault := include_fault(root, path, layer, match[1]):
                    yield f'{path}:{number}: include of "{match[1]}" {fault}'


if __name__ == "__main__":
    found = list(faults(Path(sys.argv[1])))
    print(*found, sep="\n", end="\n" if found else "", file=sys.stderr)
    sys.exit(1 if found else 0)
