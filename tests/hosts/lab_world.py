"""What the tests of the lab look at from outside."""
import os
import subprocess
import sys

SKIPPED = 77

# Tells the labs of this test from others.
os.environ["VEXO_LAB_TEST"] = str(os.getpid())


def skip_without_root():
    """Where no namespaces can be made, the test counts as skipped, or as failed in CI."""
    tried = subprocess.run(["unshare", "--mount", "--net", "--pid", "--fork", "true"], check=False,
                           capture_output=True)
    why = "needs root" if os.geteuid() != 0 else "no namespaces" if tried.returncode else \
        "" if os.path.exists("/dev/net/tun") else "/dev/net/tun is missing"
    if why:
        print(why)
        sys.exit(1 if os.environ.get("VEXOLC_REQUIRE_HOSTS") else SKIPPED)


def processes():
    """The command lines of all processes of this test's labs."""
    mark = f"VEXO_LAB_TEST={os.getpid()}\0".encode()
    found = []
    for pid in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{pid}/environ", "rb") as environment:
                if mark in environment.read():
                    with open(f"/proc/{pid}/cmdline", "rb") as line:
                        found.append(line.read().replace(b"\0", b" ").decode())
        except OSError:
            pass # gone, or about to be
    return found


def interfaces():
    return sorted(os.listdir("/sys/class/net"))
