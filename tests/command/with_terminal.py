#!/usr/bin/env python3
"""Runs a command on a terminal of its own, and types an answer at each of its password prompts.

    with_terminal.py ANSWERS COMMAND...

Each line of ANSWERS is for one prompt; a single control character is typed without a line end.

It prints what the terminal showed, and ends with the exit status of the command.
"""

import os
import pty
import re
import sys

PROMPT = re.compile(rb"(?:P|New p)assword of [^\r\n]*: ")

child, terminal = pty.fork()
if child == 0:
    os.execvp(sys.argv[2], sys.argv[2:])
shown = b""
answers = sys.argv[1].encode().split(b"\n")
answered = 0
while True:
    try:
        got = os.read(terminal, 4096)
    except OSError:  # How Linux says that the other side is closed.
        break
    if not got:
        break
    shown += got
    while answered < min(len(PROMPT.findall(shown)), len(answers)):
        answer = answers[answered]
        answered += 1
        os.write(terminal, answer if len(answer) == 1 and answer < b" " else answer + b"\n")
sys.stdout.buffer.write(shown)
sys.stdout.buffer.flush()
sys.exit(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]) % 256)
