#!/usr/bin/python3
"""lab_test.py BUILD: the lab's hosts reach whom they should and nobody else, and however the lab
ends, nothing of it is left."""
import os
import pty
import re
import select
import signal
import subprocess
import sys
import time
import unittest

import lab_world

LAB = ["demo/lab.sh", sys.argv.pop(1)]


def ping(host, address):
    return f"shell {host} ping -q -c 1 -W 2 {address}"


class Terminal:
    """The lab at a terminal of its own."""

    def __init__(self):
        self.pid, self.fd = pty.fork()
        if self.pid == 0:
            os.execv(LAB[0], LAB)
        self.said = ""

    def read_until(self, text, seconds=60):
        end = time.monotonic() + seconds
        while text not in self.said and time.monotonic() < end:
            if select.select([self.fd], [], [], 0.2)[0]:
                try:
                    self.said += os.read(self.fd, 4096).decode()
                except OSError:
                    return False
        return text in self.said

    def close(self):
        os.close(self.fd)
        os.waitpid(self.pid, 0)


class Lab(unittest.TestCase):
    def setUp(self):
        self.before = lab_world.interfaces()

    def tearDown(self):
        end = time.monotonic() + 10
        while lab_world.processes() and time.monotonic() < end:
            time.sleep(0.05)
        self.assertEqual(lab_world.processes(), [])
        self.assertEqual(lab_world.interfaces(), self.before)

    def run_lab(self, *arguments):
        return subprocess.run(LAB + list(arguments), stdin=subprocess.DEVNULL, text=True,
                              capture_output=True, timeout=120, check=False)

    def test_everybody_reaches_those_of_his_vlan_and_through_the_router(self):
        addresses = {10: {"h1": 1, "h2": 2, "h5": 5}, 20: {"h3": 3, "h4": 4, "h6": 6}}
        pings = []
        for vlan, hosts in addresses.items():
            for host in hosts:
                for other, number in hosts.items():
                    if other != host:
                        pings.append(ping(host, f"10.0.{vlan}.{number}"))
        pings += [ping("h7", "10.0.40.8"), ping("h8", "10.0.30.7"), ping("h7", "2001:db8:40::8"),
                  ping("h8", "2001:db8:30::7"), ping("h1", "2001:db8:10::5")]
        ran = self.run_lab("-c", "; ".join(pings))
        self.assertEqual(ran.returncode, 0, ran.stdout + ran.stderr)
        self.assertEqual(ran.stdout.count(" 1 received"), len(pings))

    def test_nobody_reaches_another_vlan(self):
        intruder = "shell h1 ip addr add 10.0.20.99/24 dev h1"
        ran = self.run_lab("-c", f"{intruder}; {ping('h1', '10.0.20.3')}")
        self.assertEqual(ran.returncode, 1)
        self.assertIn(" 0 received", ran.stdout)

    def test_a_prompt_comes_with_the_map_in_80_columns(self):
        terminal = Terminal()
        self.assertTrue(terminal.read_until("vexosh> "), terminal.said)
        self.assertIn("the card", terminal.said)
        shown = terminal.said.splitlines()
        self.assertLessEqual(max(len(line) for line in shown), 80)
        hint = re.search(r"nsenter .*? ip netns exec h1", terminal.said).group()
        ran = subprocess.run(f"{hint} ping -q -c 1 -W 2 10.0.10.5", shell=True, check=False,
                             capture_output=True)
        self.assertEqual(ran.returncode, 0)
        os.write(terminal.fd, b"quit\n")
        terminal.read_until("never")
        terminal.close()

    def test_ctrl_c_ends_it_at_any_time(self):
        for text in ("bringing up", "vexosh> "):
            terminal = Terminal()
            self.assertTrue(terminal.read_until(text), terminal.said)
            time.sleep(0.3)
            os.write(terminal.fd, b"\x03")
            os.write(terminal.fd, b"\x04")
            terminal.read_until("never", 30)
            terminal.close()

    def test_a_closed_terminal_ends_it_at_any_time(self):
        for text in ("bringing up", "vexosh> "):
            terminal = Terminal()
            self.assertTrue(terminal.read_until(text), terminal.said)
            terminal.close()

    def test_killing_ends_it(self):
        for number in (signal.SIGTERM, signal.SIGKILL, signal.SIGHUP):
            with subprocess.Popen(LAB + ["-c", "echo up; wait 60s"], stdin=subprocess.DEVNULL,
                                  stdout=subprocess.PIPE, text=True) as lab:
                self.assertEqual(lab.stdout.readline(), "up\n")
                lab.send_signal(number)
                self.assertNotEqual(lab.wait(10), 0)
            self.tearDown()

    def test_a_failure_half_way_ends_it(self):
        ran = self.run_lab("-c", "nonsense")
        self.assertEqual(ran.returncode, 1)
        self.assertIn("unknown command 'nonsense'", ran.stderr)

    def test_there_may_be_two(self):
        with subprocess.Popen(LAB + ["-c", "echo up; wait 60s"], stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, text=True) as first:
            self.assertEqual(first.stdout.readline(), "up\n")
            second = self.run_lab("-c", ping("h1", "10.0.10.5"))
            self.assertEqual(second.returncode, 0, second.stderr)
            self.assertEqual(first.poll(), None)
            first.terminate()


lab_world.skip_without_root()
unittest.main(verbosity=2)
