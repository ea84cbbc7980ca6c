#!/usr/bin/env python3
"""Keeps README.md's install-and-use section true: installs the build into a
fresh prefix, writes out the section's source files (each names itself in its
first line), runs every `$ ` line of its console blocks with the prefix on the
paths and compares the output; the build-without-tests lines are configured
for real and must plan no test target.
usage: readme_check.py BUILD_DIR SOURCE_DIR"""
import os
import re
import shutil
import subprocess
import sys
import tempfile

SECTION = "## Install, and use from other programs"


def blocks(readme):
    section = readme.split(SECTION, 1)[1].split("\n## ", 1)[0]
    return re.findall(r"```(\w[\w+]*)\n(.*?)```", section, re.S)


def main():
    build, source = sys.argv[1:3]
    readme = open(os.path.join(source, "README.md"), encoding="utf-8").read()
    failures = []
    with tempfile.TemporaryDirectory(prefix="varnice-readme.") as work:
        prefix = os.path.join(work, "prefix")
        subprocess.run(["cmake", "--install", build, "--prefix", prefix], check=True,
                       capture_output=True)
        env = dict(os.environ, PREFIX=prefix, PATH=f"{prefix}/bin:{os.environ['PATH']}",
                   PKG_CONFIG_PATH=f"{prefix}/lib/pkgconfig")
        env.pop("LD_LIBRARY_PATH", None)
        ran = 0
        for language, text in blocks(readme):
            if language == "sh":
                failures += check_configure(text, source, work)
                continue
            if language != "console":
                name = re.match(r"\s*(?:/\*|//|#)\s*(\S+)", text).group(1)
                path = os.path.join(work, name)
                os.makedirs(os.path.dirname(path), exist_ok=True)
                with open(path, "w", encoding="utf-8") as f:
                    f.write(text)
                continue
            for command, expected in re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", text, re.M):
                run = subprocess.run(["sh", "-c", command], cwd=work, env=env, capture_output=True,
                                     text=True, timeout=300)
                got = (run.stdout + run.stderr).rstrip("\n")
                ran += 1
                if got != expected.rstrip("\n"):
                    failures.append(f"$ {command}\n  expected: {expected.rstrip()!r}\n  got:      {got!r}")
    for f in failures:
        print(f)
    print(f"{ran} README commands run")
    return 1 if failures else 0


def check_configure(text, source, work):
    """Runs the block's configure line; the plan must build what installs and no tests."""
    line = next(l for l in text.splitlines() if "-DVARNICE_BUILD_TESTS=OFF" in l)
    args = line.split()[1:]
    args[args.index("-S") + 1] = source
    out = os.path.join(work, "configured")
    args[args.index("-B") + 1] = out
    run = subprocess.run(["cmake", *args], capture_output=True, text=True)
    if run.returncode != 0:
        return [f"configure failed: {run.stderr}"]
    # Every command the default target runs, without running any.
    plan = subprocess.run(["ninja", "-C", out, "-t", "commands"], capture_output=True, text=True).stdout
    shutil.rmtree(out)
    wanted = ["libvarnice.so", "tools/cli/varnice"]
    unwanted = ["varnice_tests", "libvarnice_internal", "varnice_example"]
    return ([f"the build without tests does not make {w}" for w in wanted if w not in plan] +
            [f"the build without tests makes {u}" for u in unwanted if u in plan])


if __name__ == "__main__":
    sys.exit(main())
