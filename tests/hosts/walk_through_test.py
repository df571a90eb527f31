#!/usr/bin/python3
"""walk_through_test.py BUILD: runs the walk-through's commands in the lab, one after the other, and
compares what each prints with the page. Three dots on the page stand for anything."""
import re
import subprocess
import sys
import tempfile

import lab_world

PAGE = "docs/walk_through.md"
PROMPT = "vexosh> "
MARK = "== step"


def steps():
    """Pairs of a command and what the page shows of its output."""
    blocks = re.findall(r"^```vexosh\n(.*?)^```", open(PAGE, encoding="utf-8").read(), re.M | re.S)
    found = []
    for line in "".join(blocks).splitlines():
        if line.startswith(PROMPT):
            found.append((line[len(PROMPT):], []))
        else:
            found[-1][1].append(line)
    return found


def main():
    lab_world.skip_without_root()
    page = steps()
    with tempfile.NamedTemporaryFile("w", suffix=".vsh") as script:
        for number, (command, _) in enumerate(page):
            script.write(f"echo '{MARK}' {number}\n{command}\n")
        script.flush()
        ran = subprocess.run(["demo/lab.sh", sys.argv[1], "--keep-going", script.name], text=True,
                             stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                             stderr=subprocess.STDOUT, timeout=200, check=False)
        said = re.split(rf"^{MARK} \d+\n", ran.stdout, flags=re.M)[1:]
        # In a script, an error names its line.
        said = [re.sub(rf"^{script.name}:\d+: ", "", text, flags=re.M) for text in said]
    bad = 0 if page and len(said) == len(page) else 1
    for (command, expected), text in zip(page, said):
        pattern = ".*".join(map(re.escape, "\n".join(expected).split("...")))
        if not re.fullmatch(pattern, text.rstrip("\n"), re.S):
            print(f"{command}\n--- the page:\n" + "\n".join(expected) + f"\n--- the card:\n{text}")
            bad += 1
    print(f"{len(page)} commands, {len(said)} run, {bad} differ")
    if len(said) != len(page):
        print(ran.stdout)
    return 1 if bad else 0


sys.exit(main())
