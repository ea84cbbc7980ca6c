#!/usr/bin/env python3
"""The manual page describes the commands and options the command itself
lists: every `varnice COMMAND --help` option has a tagged paragraph under that
command's section of varnice.1, and the page tags nothing the help lacks.
usage: man_page_check.py VARNICE_BINARY varnice.1"""
import re
import subprocess
import sys

OPTION = re.compile(r"(?<![\w-])--?[A-Za-z][\w-]*")


def run(binary, *args):
    return subprocess.run([binary, *args], capture_output=True, text=True, check=True).stdout


def commands(binary):
    """The command names that `varnice --help` lists."""
    return {m.group(1) for m in re.finditer(r"^  ([a-z]+)\b", run(binary, "--help"), re.M)}


def help_options(text):
    """Options in the usage lines and at the head of the option table's lines."""
    usage, _, body = text.partition("\n\n")
    found = set(OPTION.findall(usage))
    for line in body.splitlines():
        if re.match(r"^  -", line):
            found |= set(OPTION.findall(re.split(r"\s{2,}", line.strip())[0]))
    return found


def man_sections(page):
    """{command: options tagged with .TP} for each .SS section under COMMANDS."""
    text = re.sub(r"\\f[BIRP]", "", page).replace("\\-", "-")
    sections, current, tag_next = {}, None, False
    for line in text.splitlines():
        if line.startswith(".SH"):
            current = None
        elif line.startswith(".SS"):
            current = line.split(None, 1)[1].strip('"')
            sections[current] = set()
        elif current and line.startswith(".TP"):
            tag_next = True
        elif tag_next:
            sections[current] |= set(OPTION.findall(line.removeprefix(".B ")))
            tag_next = False
    return sections


def main():
    binary, page = sys.argv[1], open(sys.argv[2], encoding="utf-8").read()
    sections = man_sections(page)
    failures = []
    names = commands(binary)
    if names != set(sections):
        failures.append(f"commands: --help has {sorted(names)}, the page {sorted(sections)}")
    for name in sorted(names & set(sections)):
        want = help_options(run(binary, name, "--help"))
        if want != sections[name]:
            failures.append(f"{name}: --help has {sorted(want)}, the page {sorted(sections[name])}")
    for f in failures:
        print(f)
    print(f"{len(names)} commands compared")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
