#!/usr/bin/env python3
"""Runs a command on a terminal of its own, and types an answer at its password prompt.

    with_terminal.py ANSWER COMMAND...

It prints what the terminal showed, and ends with the exit status of the command.
"""

import os
import pty
import sys

PROMPT = b"Password: "

child, terminal = pty.fork()
if child == 0:
    os.execvp(sys.argv[2], sys.argv[2:])
shown = b""
answered = False
while True:
    try:
        got = os.read(terminal, 4096)
    except OSError:  # How Linux says that the other side is closed.
        break
    if not got:
        break
    shown += got
    if not answered and PROMPT in shown:
        os.write(terminal, sys.argv[1].encode() + b"\n")
        answered = True
sys.stdout.buffer.write(shown)
sys.stdout.buffer.flush()
sys.exit(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]) % 256)
