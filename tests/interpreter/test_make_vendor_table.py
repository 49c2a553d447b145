#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the script that makes the vendor table: make-vendor-table's path is the first argument."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SCRIPT = ""
HEADER = "id_hex;company;source\n"


class MakeVendorTable(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.list = Path(self.folder.name) / "list.csv"
        self.output = Path(self.folder.name) / "vendor.csv"

    def make(self, text, *options):
        self.list.write_bytes(text if isinstance(text, bytes) else text.encode("utf-8"))
        command = [sys.executable, SCRIPT, "--list", self.list, "--output", self.output, *options]
        return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, universal_newlines=True)

    def refused(self, text, *words):
        self.output.write_bytes(b"as before")
        result = self.make(text)
        self.assertEqual(result.returncode, 1)
        for word in words:
            self.assertIn(word, result.stderr)
        self.assertNotIn("Traceback", result.stderr)
        self.assertEqual(self.output.read_bytes(), b"as before")

    def test_the_table_that_ships_is_current(self):
        result = subprocess.run([sys.executable, SCRIPT, "--check"], stderr=subprocess.PIPE, universal_newlines=True)
        self.assertEqual(result.returncode, 0, result.stderr)

    def test_writes_the_form_of_the_table(self):
        self.assertEqual(self.make(HEADER + "0000000A;Ten GmbH;cia\n00000002;Two;cia\nFEEDC0DE;Far;cia\n").returncode, 0)
        self.assertEqual(self.output.read_bytes(), b"2;Two; \r\nA;Ten GmbH; \r\nFEEDC0DE;Far; \r\n")

    def test_writes_names_in_ascii(self):
        names = "Äpfel Größe & Söhne,Ingénierie,Ørsted,Łódź,Çelik,OÜ,Wärtsilä,A – B"
        rows = "".join("%08X;%s;cia\n" % (i + 1, name) for i, name in enumerate(names.split(",")))
        self.assertEqual(self.make(HEADER + rows).returncode, 0)
        companies = [line.split(b";")[1] for line in self.output.read_bytes().splitlines()]
        self.assertEqual(companies, [b"Aepfel Groesse & Soehne", b"Ingenierie", b"Oersted", b"Lodz", b"Celik", b"OU",
                                     b"Wartsila", b"A - B"])

    def test_composed_and_decomposed_letters_are_the_same(self):
        self.assertEqual(self.make(HEADER + "00000001;Ku\u0308bler;cia\n").returncode, 0)
        self.assertEqual(self.output.read_bytes(), b"1;Kuebler; \r\n")

    def test_check_finds_a_difference(self):
        self.output.write_bytes(b"1;Old; \r\n")
        result = self.make(HEADER + "00000001;New;cia\n", "--check")
        self.assertEqual(result.returncode, 1)
        self.assertIn("make-vendor-table", result.stderr)
        self.assertEqual(self.output.read_bytes(), b"1;Old; \r\n")

    def test_check_without_a_table(self):
        result = self.make(HEADER + "00000001;New;cia\n", "--check")
        self.assertEqual(result.returncode, 1)
        self.assertNotIn("Traceback", result.stderr)

    def test_refuses_a_list_without_header(self):
        self.refused("00000001;A;cia\n", "list.csv:1:")
        self.refused("", "list.csv:1:")

    def test_refuses_a_bad_id(self):
        self.refused(HEADER + "00000001;A;cia\n0x2;B;cia\n", "list.csv:3:", "0x2")
        self.refused(HEADER + "100000000;A;cia\n", "list.csv:2:")

    def test_refuses_an_id_twice(self):
        self.refused(HEADER + "00000001;A;cia\n1;B;cia\n", "list.csv:3:", "twice")

    def test_refuses_a_wrong_number_of_fields(self):
        self.refused(HEADER + "00000001;A; B;cia\n", "list.csv:2:", "fields")

    def test_refuses_a_row_without_company(self):
        self.refused(HEADER + "00000001; ;cia\n", "list.csv:2:", "company")

    def test_refuses_a_letter_without_spelling(self):
        self.refused(HEADER + "00000001;\u4e2d\u56fd;cia\n", "list.csv:2:", "ASCII")

    def test_refuses_a_list_that_is_no_utf8(self):
        self.refused(HEADER.encode("ascii") + b"00000001;K\xfcbler;cia\n", "list.csv")


if __name__ == "__main__":
    SCRIPT = sys.argv.pop(1)
    unittest.main()
