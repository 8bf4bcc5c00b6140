#!/usr/bin/python3
"""What make_outlines.py takes and what it refuses: make_outlines_test.py FOLDER_OF_IT"""
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, sys.argv.pop())
sys.dont_write_bytecode = True
import make_outlines  # noqa: E402

FILLED = 'viewBox="0 0 16 16" fill="currentColor"'
ROUND = 'stroke-linecap="round" stroke-linejoin="round"'
STROKED = f'viewBox="0 0 16 16" fill="none" stroke="currentColor" stroke-width="1.5" {ROUND}'


class Pictures(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.home = Path(self.folder.name)

    def read(self, look, content):
        file = self.home / "picture.svg"
        file.write_text(f'<svg xmlns="http://www.w3.org/2000/svg" {look}>{content}</svg>')
        return make_outlines.read_picture(file)

    def refuses(self, look, content):
        with self.assertRaises(SystemExit) as ended:
            self.read(look, content)
        self.assertIsInstance(ended.exception.code, str)  # says why

    def table(self, text):
        file = self.home / "pictures.txt"
        file.write_text(text)
        return make_outlines.read_table(file, self.home)[0]

    def test_a_path_is_taken_down_in_thousandths(self):
        (shape,) = self.read(FILLED, '<path fill-rule="evenodd" d="M1 2l3 .5H0v-1z"/>')
        self.assertEqual(shape["commands"], "MLLLLZ")
        corners = [1000, 2000, 4000, 2500, 0, 2500, 0, 1500]
        self.assertEqual(shape["points"], corners + corners[:2])  # and back
        self.assertTrue(shape["even_odd"])
        self.assertEqual(shape["stroke"], 0)

    def test_arcs_become_curves(self):
        (shape,) = self.read(FILLED, '<path d="M8 1a7 7 0 1 1 0 14A7 7 0 0 1 8 1z"/>')
        self.assertEqual(set(shape["commands"]), set("MCZ"))

    def test_rectangles_and_circles_are_paths_too(self):
        rect, circle = self.read(
            STROKED, '<rect x="1" y="2" width="4" height="6" rx="1"/><circle cx="8" cy="8" r="3"/>'
        )
        self.assertEqual(rect["stroke"], 1500)
        self.assertEqual(rect["points"][:4], [2000, 2000, 4000, 2000])
        self.assertEqual((min(circle["points"]), max(circle["points"])), (5000, 11000))

    def test_what_it_does_not_know_it_refuses(self):
        path = '<path d="M1 1h9v9z"/>'
        self.refuses('viewBox="0 0 24 24"', path)
        self.refuses(FILLED, "")
        self.refuses(FILLED, '<path d=""/>')
        self.refuses(FILLED, f"<g>{path}</g>")
        self.refuses(FILLED, '<line x1="1" y1="1" x2="2" y2="2"/>')
        self.refuses(FILLED, '<path d="M1 1h9v9z" transform="scale(2)"/>')
        self.refuses(FILLED, '<path d="M1 1h9v9z" opacity="0.5"/>')
        self.refuses(FILLED, '<path d="M1 1h9v9z" fill-rule="odd"/>')
        self.refuses(FILLED + ' style="fill: none"', path)
        self.refuses(FILLED + ' stroke="currentColor" ' + ROUND, path)  # both
        self.refuses('viewBox="0 0 16 16" fill="none"', path)  # neither
        self.refuses('viewBox="0 0 16 16" fill="none" stroke="currentColor"', path)  # square ends

    def test_the_table_chooses_shapes(self):
        self.read(FILLED, '<path d="M1 1h9v9z"/><path d="M2 2h9v9z"/>')
        self.assertEqual(len(self.table("# words\n\nb picture\n")["b"]), 2)
        (shape,) = self.table("b picture 2\n")["b"]
        self.assertEqual(shape["points"][0], 2000)
        for bad in ("b picture 3", "b picture 0", "b missing", "b picture\nb picture"):
            with self.assertRaises(SystemExit):
                self.table(bad + "\n")


if __name__ == "__main__":
    unittest.main()
