#!/usr/bin/python3
"""Makes the table of symbol outlines: make_outlines.py PICTURES SET_FOLDER TARGET [DEPFILE]

Reads the SVG files that PICTURES names, from SET_FOLDER and from beside PICTURES, and writes their
shapes as C++. Knows paths, rectangles and circles, filled or stroked with round ends. Whatever else a
picture holds ends the build: a symbol that lacks a part must not pass unseen.
"""
import sys
from pathlib import Path
from xml.etree import ElementTree

from fontTools.pens.basePen import BasePen
from fontTools.svgLib.path import parse_path

UNIT = 1000  # of the table, in one of the picture's own units
SIDE = 16  # of every picture, in its own units

DRAWN = {"fill", "stroke", "stroke-width", "stroke-linecap", "stroke-linejoin", "fill-rule"}
GEOMETRY = {
    "path": {"d"},
    "rect": {"x", "y", "width", "height", "rx"},
    "circle": {"cx", "cy", "r"},
}
UNDRAWN = {"class", "width", "height", "viewBox"}  # of the picture as a whole


class Outline(BasePen):
    """Takes down the commands of a path and their points."""

    def __init__(self):
        super().__init__()
        self.commands = ""
        self.points = []

    def add(self, command, *points):
        self.commands += command
        self.points += [round(value * UNIT) for point in points for value in point]

    def _moveTo(self, point):
        self.add("M", point)

    def _lineTo(self, point):
        self.add("L", point)

    def _curveToOne(self, first, second, end):
        self.add("C", first, second, end)

    def _closePath(self):
        self.add("Z")


def rounded_rectangle(x, y, width, height, radius):
    r = min(radius, width / 2, height / 2)
    arc = f"a{r} {r} 0 0 1"
    return (
        f"M{x + r} {y}h{width - 2 * r}{arc} {r} {r}v{height - 2 * r}{arc} {-r} {r}"
        f"h{2 * r - width}{arc} {-r} {-r}v{2 * r - height}{arc} {r} {-r}z"
    )


def path_of(tag, attributes):
    number = lambda name: float(attributes.get(name, 0))
    if tag == "path":
        return attributes["d"]
    if tag == "circle":
        r = number("r")
        x, y = number("cx"), number("cy")
        return rounded_rectangle(x - r, y - r, 2 * r, 2 * r, r)
    return rounded_rectangle(*(number(name) for name in ("x", "y", "width", "height", "rx")))


def shape(tag, attributes, inherited, where):
    """How it is painted, and its outline: one of filled and stroked, not both."""
    look = {**inherited, **{name: attributes[name] for name in DRAWN & attributes.keys()}}
    filled = look.get("fill", "black") != "none"
    stroked = look.get("stroke", "none") != "none"
    if filled == stroked:
        sys.exit(f"{where}: a shape is either filled or stroked")
    if stroked and not look.get("stroke-linecap") == look.get("stroke-linejoin") == "round":
        sys.exit(f"{where}: a stroke has round ends and joins")
    if look.get("fill-rule", "nonzero") not in ("nonzero", "evenodd"):
        sys.exit(f"{where}: unknown fill rule")
    outline = Outline()
    parse_path(path_of(tag, attributes), outline)
    if not outline.points:
        sys.exit(f"{where}: an empty shape")
    return {
        "commands": outline.commands,
        "points": outline.points,
        "stroke": round(float(look.get("stroke-width", 1)) * UNIT) if stroked else 0,
        "even_odd": look.get("fill-rule") == "evenodd",
    }


def read_picture(file):
    root = ElementTree.parse(file).getroot()
    local = lambda element: element.tag.rpartition("}")[2]
    if local(root) != "svg" or root.get("viewBox") != f"0 0 {SIDE} {SIDE}":
        sys.exit(f"{file}: not a picture of {SIDE} by {SIDE}")
    unknown = set(root.keys()) - DRAWN - UNDRAWN
    if unknown:
        sys.exit(f"{file}: unknown attribute {unknown}")
    inherited = {name: root.get(name) for name in DRAWN & set(root.keys())}
    shapes = []
    for element in root:
        tag = local(element)
        if tag not in GEOMETRY or len(element):
            sys.exit(f"{file}: unknown element {tag}")
        unknown = set(element.keys()) - DRAWN - GEOMETRY[tag]
        if unknown:
            sys.exit(f"{file}: unknown attribute {unknown} of {tag}")
        shapes.append(shape(tag, element.attrib, inherited, file))
    if not shapes:
        sys.exit(f"{file}: an empty picture")
    return shapes


def read_table(pictures, folder):
    """The shapes of each symbol by name, and the files that they came from."""
    symbols, files = {}, set()
    for line in pictures.read_text().splitlines():
        words = line.split()
        if not words or words[0].startswith("#"):
            continue
        name, picture, *chosen = words
        if name in symbols:
            sys.exit(f"{pictures}: {name} stands twice")
        home = pictures.parent if picture.startswith("drawn/") else folder
        file = home / f"{picture}.svg"
        if not file.is_file():
            sys.exit(f"{pictures}: no picture {file}")
        files.add(file)
        shapes = read_picture(file)
        if any(not 1 <= int(number) <= len(shapes) for number in chosen):
            sys.exit(f"{pictures}: {picture} has no shape {chosen}")
        symbols[name] = [shapes[int(number) - 1] for number in chosen] or shapes
    return dict(sorted(symbols.items())), sorted(files)


def rows(values, width=16):
    values = list(values)
    for at in range(0, len(values), width):
        yield "    " + ", ".join(str(value) for value in values[at : at + width]) + ","


def code(symbols):
    commands, points, shapes, table = "", [], [], []
    known = {}  # pictures share shapes
    for name, own in symbols.items():
        key = repr(own)
        if key not in known:
            known[key] = len(shapes)
            for each in own:
                shapes.append(
                    f"    {{{len(commands)}, {len(each['commands'])}, {len(points)}, "
                    f"{each['stroke']}, {str(each['even_odd']).lower()}}},"
                )
                commands += each["commands"]
                points += each["points"]
        table.append(f'    {{"{name}", {known[key]}, {len(own)}}},')
    return "\n".join([
        "// Made by make_outlines.py.",
        '#include "icons/SymbolOutlines.h"',
        "namespace tavero {",
        "namespace {",
        "constexpr char commands[] =",
        *(f'    "{commands[at : at + 80]}"' for at in range(0, len(commands), 80)),
        "    ;",
        "constexpr std::int16_t points[] = {",
        *rows(points),
        "};",
        "constexpr SymbolShape shapes[] = {",
        *shapes,
        "};",
        "constexpr SymbolEntry entries[] = {",
        *table,
        "};",
        "}",
        f"const SymbolOutlines symbolOutlines{{{SIDE}, {UNIT}, commands, points, shapes, entries}};",
        "}",
        "",
    ])


def main(pictures, folder, target, depfile=None):
    symbols, files = read_table(pictures, folder)
    target.write_text(code(symbols))
    if depfile:
        depfile.write_text(f"{target}: {' '.join(str(file) for file in files)}\n")


if __name__ == "__main__":
    if len(sys.argv) not in (4, 5):
        sys.exit(__doc__)
    main(*map(Path, sys.argv[1:]))
