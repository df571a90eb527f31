#!/usr/bin/python3
"""schema_test.py VEXOSH MANUAL SCHEMA: runs the manual's session with --json, and fails unless
every table and event is as the schema describes it and every table that it describes was there."""
import json
import os
import re
import subprocess
import sys

SKIPPED = 77


def session(manual):
    text = open(manual, encoding="utf-8").read()
    lines = "\n".join(re.findall(r"^```vexosh\n(.*?)^```", text, re.M | re.S))
    return "events on\n" + lines.replace("\nquit\n", "\n") + EXTRA


# What the manual does not show, as tables with rows.
EXTRA = """
port storm 1 broadcast 100
show storm-control
show limits
show counters driver 1 all
show capture demo/h1.pcap
events on
send 1 dst=01:80:c2:00:00:0e type=0x88cc
wait 1s
"""


def main():
    try:
        import jsonschema
    except ImportError:
        print("python3-jsonschema is not installed")
        return 1 if os.environ.get("VEXOLC_REQUIRE_HOSTS") else SKIPPED
    vexosh, manual, schema_path = sys.argv[1:]
    schema = json.load(open(schema_path, encoding="utf-8"))
    validator = jsonschema.Draft202012Validator(schema)
    validator.check_schema(schema)
    run = subprocess.run([vexosh, "-m", "--json", "/dev/stdin"], input=session(manual), text=True,
                         capture_output=True, check=False)
    if run.returncode != 0:
        print(run.stderr)
        return 1
    seen, bad = set(), 0
    for line in run.stdout.splitlines():
        if not line.startswith("{"):
            continue
        said = json.loads(line)
        seen.add("show " + said["show"] if "show" in said else "event " + said["event"])
        if not validator.is_valid(said):
            print("not as described:", line[:300])
            bad += 1
    described = {one["title"] for one in schema["oneOf"]}
    unseen = described - seen - {"event lost", "event refused"}
    if unseen:
        print("never printed:", ", ".join(sorted(unseen)))
    return 1 if bad or unseen else 0


sys.exit(main())
