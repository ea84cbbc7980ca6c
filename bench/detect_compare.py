#!/usr/bin/env python3
"""Detection accuracy beside uchardet, ICU's charset detector and nkf.

Builds the samples the accuracy test measures (tests/detect/corpus: each
encoding's texts joined, one sample per line start, cut at a character
boundary to 16, 64, 256, 1024 and 4096 bytes), asks each detector for each
sample, and prints percent right per encoding and size. An answer is right
when it decodes the sample to the same text as the true encoding (Python's
codecs are the judge), so ASCII is right in any ASCII-based encoding.

usage: bench/detect_compare.py [path/to/varnice]   (default build/tools/cli/varnice)
VARNICE_CORPUS=DIR measures other texts, named ja-*, eu-* and ascii-* likewise.
Detectors that are not installed are left out; ICU's is used through a small
helper compiled against libicu when g++ and the ICU headers are present.
"""
import codecs
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
SIZES = [16, 64, 256, 1024, 4096]
# label, Python codec, texts it is measured on, byte-order mark
SOURCES = [
    ("UTF-8", "utf-8", ("ja", "eu", "ascii"), b""),
    ("UTF-7", "utf-7", ("ja", "eu", "ascii"), b""),
    ("UTF-16 (BOM)", "utf-16-le", ("ja", "eu", "ascii"), b"\xff\xfe"),
    ("Shift_JIS", "shift_jis", ("ja",), b""),
    ("CP932", "cp932", ("ja",), b""),
    ("EUC-JP", "euc_jp", ("ja",), b""),
    ("ISO-2022-JP", "iso2022_jp", ("ja",), b""),
    ("ISO-8859-1", "latin-1", ("eu",), b""),
    ("windows-1252", "cp1252", ("eu",), b""),
    ("ASCII", "ascii", ("ascii",), b""),
]
ALIASES = {"ucs2": "utf-16", "utf16": "utf-16", "utf-16le": "utf-16", "utf-16be": "utf-16",
           "shift-jis": "shift_jis", "sjis": "shift_jis", "shiftjis": "shift_jis", "windows-31j": "cp932",
           "euc-j": "euc_jp", "eucjp": "euc_jp", "iso-2022-jp": "iso2022_jp", "iso2022jp": "iso2022_jp",
           "ascii": "ascii", "us-ascii": "ascii", "binary": None, "unknown": None, "none": None,
           "latin1": "latin-1", "iso-8859-1": "latin-1", "windows-1252": "cp1252", "cp1252": "cp1252"}

ICU_HELPER = r"""
#include <unicode/ucsdet.h>
#include <cstdio>
#include <fstream>
#include <sstream>
int main(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    std::ifstream in(argv[i], std::ios::binary);
    std::stringstream s; s << in.rdbuf(); std::string bytes = s.str();
    UErrorCode status = U_ZERO_ERROR;
    UCharsetDetector* d = ucsdet_open(&status);
    ucsdet_setText(d, bytes.data(), (int32_t)bytes.size(), &status);
    const UCharsetMatch* m = ucsdet_detect(d, &status);
    std::printf("%s: %s\n", argv[i], m && U_SUCCESS(status) ? ucsdet_getName(m, &status) : "none");
    ucsdet_close(d);
  }
}
"""


def codec_of(name):
    key = name.strip().lower()
    if key in ALIASES:
        return ALIASES[key]
    try:
        return codecs.lookup(key).name
    except LookupError:
        return None


def decode(codec, data):
    try:
        return data.decode(codec)
    except (UnicodeDecodeError, LookupError):
        return None


def samples():
    texts = {}
    corpus = pathlib.Path(os.environ.get("VARNICE_CORPUS", ROOT / "tests/detect/corpus"))
    for path in sorted(corpus.iterdir()):
        texts[path.name] = path.read_text(encoding="utf-8")
    for label, codec, kinds, bom in SOURCES:
        stream = ""
        for name, text in texts.items():
            if name.split("-")[0] not in kinds:
                continue
            try:
                text.encode(codec)
            except UnicodeEncodeError:
                continue
            stream += text
        starts = [0] + [i + 1 for i, c in enumerate(stream) if c == "\n" and i + 1 < len(stream)]
        for at in starts:
            rotated = stream[at:] + stream[:at]
            for size in SIZES:
                low, high = 0, min(len(rotated), size)
                while low < high:  # the longest prefix that fits
                    mid = (low + high + 1) // 2
                    if len(bom + rotated[:mid].encode(codec)) <= size:
                        low = mid
                    else:
                        high = mid - 1
                kept = rotated[:low]
                yield label, size, bom + kept.encode(codec), kept


def run(command, files):
    answers = {}
    for i in range(0, len(files), 500):
        chunk = files[i:i + 500]
        out = subprocess.run(command + chunk, capture_output=True, text=True).stdout
        for line in out.splitlines():
            path, _, name = line.rpartition(": ")
            answers[path] = name
        if len(chunk) == 1 and chunk[0] not in answers and out.strip():
            answers[chunk[0]] = out.strip()
    return answers


def main():
    varnice = sys.argv[1] if len(sys.argv) > 1 else str(ROOT / "build/tools/cli/varnice")
    work = pathlib.Path(tempfile.mkdtemp(prefix="varnice-detect-compare-"))
    detectors = {"varnice": [varnice, "detect"]}
    if shutil.which("uchardet"):
        detectors["uchardet"] = ["uchardet"]
    if shutil.which("nkf"):
        detectors["nkf"] = ["nkf", "--guess"]
    if shutil.which("g++") and pathlib.Path("/usr/include/unicode/ucsdet.h").exists():
        (work / "icu.cpp").write_text(ICU_HELPER)
        built = subprocess.run(["g++", "-O1", "-o", str(work / "icu"), str(work / "icu.cpp"), "-licui18n", "-licuuc"])
        if built.returncode == 0:
            detectors["ICU"] = [str(work / "icu")]
    cases = []
    for n, (label, size, data, text) in enumerate(samples()):
        path = work / f"s{n}"
        path.write_bytes(data)
        cases.append((label, size, str(path), data, text))
    files = [c[2] for c in cases]
    tables = {}
    for name, command in detectors.items():
        answers = run(command, files)
        table = tables.setdefault(name, {})
        for label, size, path, data, text in cases:
            answer = answers.get(path, "")
            if name == "nkf" and answer.startswith("ASCII"):
                answer = "ascii"
            codec = codec_of(answer.split(" ")[0]) if answer else None
            right = codec is not None and decode(codec, data) in (text, "\ufeff" + text)
            cell = table.setdefault((label, size), [0, 0])
            cell[0] += right
            cell[1] += 1
    shutil.rmtree(work)
    names = list(tables)
    print(f"{'':14} {'bytes':>6} " + " ".join(f"{n:>9}" for n in names))
    totals = {n: [0, 0] for n in names}
    for label, *_ in SOURCES:
        for size in SIZES:
            row = []
            for n in names:
                right, total = tables[n][(label, size)]
                totals[n][0] += right
                totals[n][1] += total
                row.append(f"{100.0 * right / total:8.1f}%")
            print(f"{label:14} {size:6} " + " ".join(row))
    print(f"{'overall':14} {'':6} " + " ".join(f"{100.0 * r / t:8.1f}%" for r, t in totals.values()))


if __name__ == "__main__":
    main()
