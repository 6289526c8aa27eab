"""The maker of the manual, on manuals with faults."""

import json
import os
import sys
import tempfile
import unittest

import manual

INDEX = "# Velgrove\n\n[Cues](01-cues.md)\n\n![The desk](pictures/desk.png)\n"
CUES = "# Cues\n\n## Times\n\nBack to [times](#times) or to [the front](00-index.md).\n"


class ManualTest(unittest.TestCase):
    def make(self, **changes):
        """Makes a manual of two pages and a picture, with some files otherwise; None leaves one out."""
        files = {"00-index.md": INDEX, "01-cues.md": CUES, "pictures/desk.png": "PNG",
                 "manual.css": "a { color: @text; }"} | changes.pop("files", {})
        with tempfile.TemporaryDirectory() as place:
            folder, to = os.path.join(place, "manual"), os.path.join(place, "html")
            os.makedirs(os.path.join(folder, "pictures"))
            for name, text in files.items():
                if text is not None:
                    with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                        file.write(text)
            manual.make(folder, to)
            return {name: self.read(to, name) for name in ("index.html", "cues.html", "manual.css", "pages.json")}

    @staticmethod
    def read(folder, name):
        with open(os.path.join(folder, name), encoding="utf-8") as file:
            return file.read()

    def test_pages_lead_to_each_other_and_can_be_searched(self):
        made = self.make()
        self.assertIn('href="cues.html">Cues &rarr;', made["index.html"])
        self.assertIn('href="index.html">the front', made["cues.html"])
        self.assertRegex(made["manual.css"], r"color: #\w{6};")
        self.assertEqual([page["title"] for page in json.loads(made["pages.json"])], ["Velgrove", "Cues"])
        self.assertIn("Times Back to times or to the front.", json.loads(made["pages.json"])[1]["text"])

    def test_a_fault_is_named_with_its_page(self):
        for files, fault in (
                ({"01-cues.md": CUES + "[x](02-gone.md)"}, "01-cues.md: dead link gone.html"),
                ({"01-cues.md": CUES + "[x](00-index.md#gone)"}, "01-cues.md: dead link index.html#gone"),
                ({"01-cues.md": CUES + "[x](http://example.org/)"}, "01-cues.md: dead link http://example.org/"),
                ({"01-cues.md": CUES + "![x](pictures/gone.png)"}, "01-cues.md: missing picture pictures/gone.png"),
                ({"pictures/old.png": "PNG"}, "pictures/old.png: no page shows it"),
                ({"02-lost.md": "# Lost\n"}, "02-lost.md: no page links it"),
                ({"lost.md": "# Lost\n"}, "lost.md: isn't named NN-name.md"),
                ({"01-cues.md": "Cues\n"}, "01-cues.md: doesn't begin with its title"),
                ({"00-index.md": None}, "the first page isn't index")):
            with self.assertRaises(manual.Wrong) as caught:
                self.make(files=files)
            self.assertIn(fault, str(caught.exception).splitlines())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
