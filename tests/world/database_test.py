#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
# SPDX-License-Identifier: MIT
"""Reads and writes "database.bin" as the table in docs/files.md has it, and compares that with the program's store.

usage: database_test.py WORKER        (store_worker, which loads and saves as the program does)
"""
import os
import random
import struct
import subprocess
import sys
import tempfile
import unittest

COUNT = struct.Struct("<i")
# name, description, day, month, year, hour, minute, weekday, kind, repeat, elapsed, three flags and the filler
RECORD = struct.Struct("<20s512s3i2i3if3B1B")
REMINDER = 2
KIND, ELAPSED = 8, 10
LONGEST_PERIOD = 10800.0


def text_of(field):
    return field.split(b"\0", 1)[0]


def read_database(data):
    """Returns the records of a file, as tuples."""
    (count,) = COUNT.unpack_from(data)
    assert len(data) == COUNT.size + count * RECORD.size, "the file has the length that its count says"
    return [RECORD.unpack_from(data, COUNT.size + i * RECORD.size) for i in range(count)]


def write_database(records):
    return COUNT.pack(len(records)) + b"".join(RECORD.pack(*record) for record in records)


class Database(unittest.TestCase):
    worker = ""

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.path = os.path.join(self.folder.name, "database.bin")

    def run_worker(self, *words):
        run = subprocess.run([self.worker, *words], cwd=self.folder.name, check=True, text=True, capture_output=True)
        self.assertEqual(run.stderr, "", "the program finds the file in order")
        self.told = run.stdout
        with open(self.path, "rb") as file:
            return file.read()

    def told_records(self):
        """Returns the records by the program's names of the fields, not by their places."""
        return [(bytes.fromhex(words[0]), bytes.fromhex(words[1]), *map(int, words[2:10]), float(words[10]),
                 *map(int, words[11:])) for words in map(str.split, self.told.splitlines())]

    def test_a_record_has_the_length_of_the_table(self):
        self.assertEqual(RECORD.size, 572)

    def test_what_the_program_saves_is_what_the_table_says(self):
        version = 40
        records = read_database(self.run_worker("events", str(version), "save"))
        self.assertEqual(len(records), version)
        for i, record in enumerate(records):
            letter = chr(ord("a") + (version + i) % 26).encode()
            expected = (i % 31 + 1, i % 12 + 1, 2000 + i, i % 24, i % 60, i % 7, i % 3, i % 4, LONGEST_PERIOD,
                        i & 1, i >> 1 & 1, i >> 2 & 1, 0)
            self.assertEqual(text_of(record[0]), f"evento {i} di {version}".encode())
            self.assertEqual(text_of(record[1]), letter * 511)
            self.assertEqual(record[2:], expected)

    def test_what_is_written_by_the_table_is_what_the_program_loads(self):
        dice = random.Random(7)
        records = []
        for i in range(300):
            numbers = [dice.randint(-2 ** 31, 2 ** 31 - 1) for _ in range(8)]
            numbers[KIND - 2] = dice.choice([0, 1, REMINDER, 3, -1])
            records.append((dice.randbytes(20), dice.randbytes(512), *numbers, float(dice.randint(0, 20000)),
                            *dice.randbytes(3), 0))
        with open(self.path, "wb") as file:
            file.write(write_database(records))
        # A reminder is due when the program has started.
        expected = [r[:ELAPSED] + (LONGEST_PERIOD,) + r[ELAPSED + 1:] if r[KIND] == REMINDER else r
                    for r in records]
        self.assertEqual(read_database(self.run_worker("load", "tell", "save")), expected)
        self.assertEqual(self.told_records(), expected)

    def test_no_events_are_four_bytes(self):
        self.assertEqual(self.run_worker("load", "save"), b"\0\0\0\0")


if __name__ == "__main__":
    Database.worker = os.path.abspath(sys.argv.pop())
    unittest.main()
