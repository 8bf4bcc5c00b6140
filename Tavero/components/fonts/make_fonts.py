#!/usr/bin/python3
"""Makes the interface's font out of Inter: make_fonts.py SOURCE_FOLDER TARGET_FOLDER

Four weights, reduced to the letters that the interface and names of apps need, under a family name of
their own. The digits are those of equal width, which Qt can't choose at run time: figures that change
every second must not move what stands beside them.
"""
import sys
from pathlib import Path

from fontTools import subset
from fontTools.ttLib import TTFont

FAMILY = "Tavero UI"
WEIGHTS = ("Regular", "Medium", "SemiBold", "Bold")

LETTERS = [*range(0x20, 0x7F), *range(0xA0, 0x250)]  # Latin with all its accents
PUNCTUATION = [*range(0x2010, 0x2027), 0x2030, 0x2032, 0x2033, 0x2039, 0x203A]
SIGNS = [0x20AC, 0x2122, *range(0x2190, 0x2194), 0x2212, 0x2248, 0x2260, 0x2264, 0x2265]
KEYS = [0x2303, 0x2318, 0x2325, 0x21E7]

FAMILY_NAMES = (1, 16)
FULL_NAME = 4
POSTSCRIPT_NAME = 6


def tabular_forms(font):
    """The glyph of equal width for every glyph that has one."""
    table = font["GSUB"].table
    lookups = {
        index
        for record in table.FeatureList.FeatureRecord
        if record.FeatureTag == "tnum"
        for index in record.Feature.LookupListIndex
    }
    forms = {}
    for index in lookups:
        for subtable in table.LookupList.Lookup[index].SubTable:
            forms.update(getattr(subtable, "ExtSubTable", subtable).mapping)
    if not forms:
        sys.exit("the font has no digits of equal width")
    return forms


def freeze_digits(font):
    forms = tabular_forms(font)
    for table in font["cmap"].tables:
        for code, glyph in table.cmap.items():
            table.cmap[code] = forms.get(glyph, glyph)
    # The weights between the drawn ones are computed, which leaves them a unit off here and there.
    widths = font["hmtx"].metrics
    digits = [font.getBestCmap()[code] for code in range(ord("0"), ord("9") + 1)]
    widest = max(widths[digit][0] for digit in digits)
    for digit in digits:
        widths[digit] = (widest, widths[digit][1])


def reduce(font):
    options = subset.Options()
    options.layout_features = ["kern", "mark", "mkmk", "ccmp", "locl"]
    options.name_IDs = ["*"]
    options.notdef_outline = True
    options.hinting = False
    subsetter = subset.Subsetter(options)
    subsetter.populate(unicodes=LETTERS + PUNCTUATION + SIGNS + KEYS)
    subsetter.subset(font)


def rename(font, weight):
    names = dict.fromkeys(FAMILY_NAMES, FAMILY)
    names[FULL_NAME] = f"{FAMILY} {weight}"
    names[POSTSCRIPT_NAME] = f"{FAMILY}-{weight}".replace(" ", "")
    for record in font["name"].names:
        record.string = names.get(record.nameID, record.toUnicode())


def main(source, target):
    target.mkdir(parents=True, exist_ok=True)
    for weight in WEIGHTS:
        # The same input gives the same bytes: no time of making goes in.
        font = TTFont(source / f"Inter-{weight}.otf", recalcTimestamp=False)
        freeze_digits(font)
        reduce(font)
        rename(font, weight)
        font.save(target / f"TaveroUI-{weight}.otf")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(Path(sys.argv[1]), Path(sys.argv[2]))
