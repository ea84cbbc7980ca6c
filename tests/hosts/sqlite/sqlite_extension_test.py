#!/usr/bin/env python3
"""Runs the real sqlite3 shell with the extension loaded.
usage: sqlite_extension_test.py EXTENSION VARNICE_COMMAND SOURCE_DIR"""
import os
import subprocess
import sys
import unittest

EXTENSION, COMMAND, SOURCE = sys.argv[1:4]
SAMPLES = os.path.join(SOURCE, "examples", "samples")
JAPANESE = {"Shift_JIS": "japanese.sjis.txt", "EUC-JP": "japanese.eucjp.txt",
            "ISO-2022-JP": "japanese.iso2022jp.txt", "UTF-8": "japanese.utf8.txt"}


def sample(name):
    return os.path.join(SAMPLES, name).replace("'", "''")


def sqlite(*statements):
    """(stdout, stderr) of one shell run; a failing statement stops it."""
    run = subprocess.run(["sqlite3", "-batch", "-bail", ":memory:", f".load {EXTENSION}", *statements],
                         capture_output=True, text=True, timeout=120)
    return run.stdout, run.stderr


def value(statement):
    out, err = sqlite(statement)
    if err:
        raise AssertionError(err)
    return out.rstrip("\n")


class Conversions(unittest.TestCase):
    def test_every_sample_decodes_encodes_and_converts_to_the_reference(self):
        utf8 = f"CAST(readfile('{sample(JAPANESE['UTF-8'])}') AS TEXT)"
        for encoding, name in JAPANESE.items():
            raw = f"readfile('{sample(name)}')"
            with self.subTest(encoding):
                self.assertEqual(value(f"SELECT varnice_decode({raw}, '{encoding}', 'strict') = {utf8}"), "1")
                self.assertEqual(value(f"SELECT varnice_encode({utf8}, '{encoding}', 'strict') = {raw}"), "1")
                self.assertEqual(value(f"SELECT varnice_convert({raw}, '{encoding}', 'Shift_JIS') = "
                                       f"readfile('{sample(JAPANESE['Shift_JIS'])}')"), "1")

    def test_names_ignore_case_and_punctuation(self):
        self.assertEqual(value("SELECT varnice_decode(x'93fa967b8cea', 'shift jis')"), "日本語")

    def test_null_and_empty(self):
        self.assertEqual(value("SELECT quote(varnice_decode(NULL, 'EUC-JP')), quote(varnice_encode(NULL, 'EUC-JP')),"
                               " quote(varnice_decode(x'', 'EUC-JP')), quote(varnice_encode('', 'EUC-JP')),"
                               " quote(varnice_detect(x''))"), "NULL|NULL|''|X''|NULL")

    def test_outputs_longer_than_the_first_guess_are_whole(self):
        # ISO-2022-JP switches sets around every kana here: more than three bytes a character.
        text = "replace(printf('%.*c', 20000, 'x'), 'x', 'aあ')"
        self.assertEqual(value(f"SELECT varnice_decode(varnice_encode({text}, 'ISO-2022-JP'), 'ISO-2022-JP')"
                               f" = {text}"), "1")
        self.assertEqual(value(f"SELECT length(varnice_decode(CAST({text} AS BLOB), 'UTF-8'))"), "40000")

    def test_random_bytes_round_trip_through_every_form_without_a_crash(self):
        # Whatever the bytes, decoding gives text that UTF-8 and UTF-7 write and read
        # back unchanged, and no buffer guess is too small. The decoders pass encoded
        # surrogates through, and SQLite cannot keep a lone one (stored as ED A0-BF ..),
        # so texts holding one are left out.
        forms = ["UTF-8", "UTF-7", "UCS2", "ISO-2022-JP", "Shift_JIS", "EUC-JP", "auto"]
        for form in forms:
            with self.subTest(form):
                statement = (
                    "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 300),"
                    f" d AS MATERIALIZED (SELECT varnice_decode(randomblob(i), '{form}') AS t FROM n),"
                    " kept AS (SELECT t FROM d WHERE hex(CAST(t AS BLOB)) NOT GLOB '*ED[AB]*')"
                    " SELECT (SELECT count(*) FROM d), count(*),"
                    " total(varnice_decode(varnice_encode(t, 'UTF-7'), 'UTF-7') = t),"
                    " total(varnice_decode(varnice_encode(t, 'UTF-8'), 'UTF-8') = t) FROM kept")
                rows, kept, utf7, utf8 = (int(float(x)) for x in value(statement).split("|"))
                self.assertEqual(rows, 300)
                if form != "UCS2":  # random UTF-16 meets SQLite's own byte-order-mark and surrogate rules
                    self.assertEqual((utf7, utf8), (kept, kept))
                    self.assertGreater(kept, 200)

    def test_replacement_is_the_default_and_strict_mode_refuses(self):
        self.assertEqual(value("SELECT hex(CAST(varnice_decode(x'41ff4243', 'UTF-8') AS BLOB))"), "41EFBFBD43")
        self.assertEqual(value("SELECT varnice_decode(CAST('a�b' AS BLOB), 'UTF-8', 'strict')"), "a�b")
        cases = {
            "SELECT varnice_decode(x'41ff42', 'UTF-8', 'strict')": "the bytes are not valid UTF-8",
            "SELECT varnice_decode(x'82a082', 'Shift_JIS', 'strict')": "not valid Shift_JIS",
            "SELECT varnice_decode(x'4142e697', 'UTF-8', 'strict')": "not valid UTF-8",
            "SELECT varnice_decode(x'feff3042ff', 'UCS2', 'strict')": "not valid UCS2",
            "SELECT varnice_encode('日本', 'ISO-8859-1', 'strict')": "characters that ISO-8859-1 cannot represent",
            "SELECT varnice_convert(x'93fa', 'Shift_JIS', 'ISO-8859-1', 'strict')": "cannot represent",
            "SELECT varnice_decode(x'41', 'UTF-8', 'loose')": "unknown mode 'loose'",
        }
        for statement, message in cases.items():
            with self.subTest(statement):
                self.assertIn(message, sqlite(statement)[1])

    def test_unknown_names_are_errors_not_latin1(self):
        cases = {
            "SELECT varnice_decode(x'41', 'no-such-encoding')": "unknown encoding 'no-such-encoding'",
            "SELECT varnice_encode('a', '')": "unknown encoding ''",
            "SELECT varnice_convert(x'41', 'UTF-8', NULL)": "the encoding name is NULL",
            "SELECT varnice_encode('a', 'auto')": "encoding 'auto' can be read but not written",
            "SELECT varnice_transform('a', 'upper,sideways')": "unknown transform 'sideways'; the transforms are: ",
            "SELECT varnice_transform('a', 'upper:Klingon')": "unknown character class 'Klingon'",
        }
        for statement, message in cases.items():
            with self.subTest(statement):
                out, err = sqlite(statement)
                self.assertIn(message, err)
                self.assertEqual(out, "")


class Detection(unittest.TestCase):
    def test_agrees_with_the_command(self):
        files = [os.path.join(SAMPLES, n) for n in sorted(os.listdir(SAMPLES)) if n.endswith(".txt")]
        corpus = os.path.join(SOURCE, "tests", "detect", "corpus")
        files += [os.path.join(corpus, n) for n in sorted(os.listdir(corpus))]
        for path in files:
            for detector in ("auto", "auto-ja"):
                with self.subTest(os.path.basename(path), detector=detector):
                    expected = subprocess.run([COMMAND, "detect", "-f", detector, path], capture_output=True,
                                              text=True, check=True).stdout.strip()
                    quoted = path.replace("'", "''")
                    self.assertEqual(value(f"SELECT varnice_detect(readfile('{quoted}'), '{detector}')"), expected)
        self.assertIn("unknown detector 'auto-fr'", sqlite("SELECT varnice_detect(x'41', 'auto-fr')")[1])

    def test_byte_order_mark(self):
        self.assertEqual(value("SELECT varnice_detect(x'feff30423044')"), "UCS2")


class Transforms(unittest.TestCase):
    def test_every_listed_transform_matches_the_command(self):
        listing = subprocess.run([COMMAND, "list", "--transforms"], capture_output=True, text=True,
                                 check=True).stdout
        text = "ｶﾅ ａｂｃ Ab\u00e9 が\r\nx\u0301 ﾊﾟ &amp; ①"
        for name in (line.split()[0] for line in listing.splitlines()):
            with self.subTest(name):
                expected = subprocess.run([COMMAND, "convert", "-f", "UTF-8", "-t", "UTF-8", "-x", name],
                                          input=text.encode(), capture_output=True, check=True).stdout
                out = value(f"SELECT hex(CAST(varnice_transform('{text}', '{name}') AS BLOB))")
                self.assertEqual(out, expected.hex().upper())

    def test_chains_and_classes(self):
        self.assertEqual(value("SELECT varnice_transform('ｶﾅ abc αβγ', 'fullwidth:Katakana,upper:GreekScript')"),
                         "カナ abc ΑΒΓ")
        self.assertEqual(value("SELECT varnice_transform('漢字とかな', 'select:Hiragana')"), "とかな")


class Collations(unittest.TestCase):
    WORDS = "VALUES ('亜'), ('ｱ'), ('あ'), ('A'), ('ア')"

    def order(self, collation):
        return value(f"SELECT group_concat(w, ' ') FROM (SELECT column1 AS w FROM ({self.WORDS})"
                     f" ORDER BY w COLLATE {collation})")

    def test_jis_order_differs_from_code_unit_order(self):
        # ASCII, halfwidth katakana, then JIS X 0208 rows: hiragana, katakana, kanji.
        self.assertEqual(self.order("JIS"), "A ｱ あ ア 亜")
        self.assertEqual(self.order("UNICODE_RAW"), "A あ ア 亜 ｱ")

    def test_index_and_equality(self):
        self.assertEqual(value("CREATE TABLE t(w TEXT COLLATE JIS); CREATE INDEX i ON t(w);"
                               f" INSERT INTO t {self.WORDS}; SELECT count(*) FROM t WHERE w < 'あ'"), "2")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "-v"])
