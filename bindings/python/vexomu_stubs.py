"""Writes the type stub of a kernel's module from the tables of its classes.

usage: python3 -m vexomu_stubs MODULE [--run SCRIPT] [--output FILE]

A class is known once an object of it was made, so SCRIPT is run first: one that makes an object of every class. What a
table says of a method, "createPart(name: str, body: int = 0) -> Part: What it does.", becomes its signature; of a
member, "-> str: The part's name.", its type. Whatever is not said is Any.
"""

import argparse
import ast
import builtins
import importlib
import re
import runpy
import sys

import vexomu

BUILTINS = {"ObjectMapping", "ObjectSequence"}


def classes():
    """The classes of kernel objects, bases first."""
    found = []

    def collect(parent):
        for child in parent.__subclasses__():
            if child.__name__ not in BUILTINS and child not in found:
                found.append(child)
            collect(child)

    collect(vexomu.Object)
    return found


def typed_parameters(name, parameters):
    """The parameters with Any where no type is said; None for what is no list of parameters."""
    try:
        function = ast.parse(f"def {name}({parameters}): ...").body[0]
    except SyntaxError:
        return None
    arguments = function.args
    for argument in [*arguments.posonlyargs, *arguments.args, *arguments.kwonlyargs, arguments.vararg, arguments.kwarg]:
        if argument is not None and argument.annotation is None:
            argument.annotation = ast.Name("Any")
    return ast.unparse(arguments)


def type_said(text):
    """The type, or Any for what is none."""
    try:
        ast.parse(text or "", mode="eval")
    except SyntaxError:
        return "Any"
    return text


def signature(name, description):
    """The parameters and the result of a method, as a stub writes them."""
    head = re.match(re.escape(name) + r"\((.*?)\)(?: -> ([^:]+))?(?:: |$)", description)
    parameters = typed_parameters(name, head[1]) if head else None
    if parameters is None:
        return "(self, *args: Any, **kwargs: Any) -> Any"
    return f"(self{', ' if parameters else ''}{parameters}) -> {type_said(head[2])}"


def member_type(description):
    said = re.match(r"-> ([^:]+)(?:: |$)", description)
    return type_said(said and said[1])


def document(text, indent):
    return f'{indent}"""{text}"""' if text and '"""' not in text and "\\" not in text else f"{indent}..."


def class_stub(kind):
    base = kind.__bases__[0]
    base_name = f"vexomu.{base.__name__}" if hasattr(vexomu, base.__name__) else base.__name__
    yield f"class {kind.__name__}({base_name}):"
    rows = [(name, row) for name, row in vars(kind).items()
            if type(row).__qualname__ in ("Method", "Member") and not row.deprecated]
    for name, row in rows:
        if type(row).__qualname__ == "Method":
            yield f"    def {name}{signature(name, row.description)}:"
        else:
            yield "    @property"
            yield f"    def {name}(self) -> {member_type(row.description)}:"
        yield document(row.__doc__, "        ")
        if type(row).__qualname__ == "Member" and not row.readOnly:
            yield f"    @{name}.setter"
            yield f"    def {name}(self, value: {member_type(row.description)}) -> None: ..."
    if not rows:
        yield "    ..."
    yield ""


def undefined(lines):
    """The names in a stub that nothing in it defines: of classes that no object was made of yet."""
    nodes = list(ast.walk(ast.parse("\n".join(lines))))
    known = {node.name for node in nodes if isinstance(node, (ast.ClassDef, ast.FunctionDef, ast.alias))}
    used = {node.id for node in nodes if isinstance(node, ast.Name) and isinstance(node.ctx, ast.Load)}
    return sorted(used - known - {"collections"} - set(dir(builtins)))


def stub(module):
    """The stub of an imported module, as text."""
    lines = [f'"""{module.__doc__}"""', "", "import collections.abc", "import os", "from typing import Any", "",
             "import numpy", "", "import vexomu", ""]
    known = classes()
    # The kinds of a template have tables of their own, which say the same.
    lines += dict.fromkeys("\n".join(class_stub(kind)) for kind in known)
    for name, value in sorted(vars(module).items()):
        if isinstance(value, vexomu.Object):
            kind = type(value)
            lines.append(f"{name}: {kind.__name__ if kind in known else 'Any'}")
    for name in undefined(lines):
        print(f"vexomu_stubs: '{name}' is Any: --run a script that makes an object of that class", file=sys.stderr)
        lines.append(f"{name} = Any")
    return "\n".join(lines) + "\n"


def main():
    parser = argparse.ArgumentParser(prog="vexomu_stubs", description="Writes the type stub of a kernel's module.")
    parser.add_argument("module")
    parser.add_argument("--run", metavar="SCRIPT", help="a script that makes an object of every class")
    parser.add_argument("--output", metavar="FILE", help="instead of the standard output")
    options = parser.parse_args()
    module = importlib.import_module(options.module)
    if options.run:
        shown, sys.stdout = sys.stdout, sys.stderr
        try:
            runpy.run_path(options.run, run_name="__main__")
        finally:
            sys.stdout = shown
    text = stub(module)
    if options.output:
        with open(options.output, "w", encoding="utf-8") as file:
            file.write(text)
    else:
        sys.stdout.write(text)


if __name__ == "__main__":
    main()
