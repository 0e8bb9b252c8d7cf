#!/usr/bin/env python3
"""Runs a command on a terminal of its own, and types an answer at each of its password prompts.

    with_terminal.py ANSWERS COMMAND...

Each line of ANSWERS is for one prompt; a single control character is typed without a line end.

It prints what the terminal showed, and ends with the exit status of the command.
"""

import re
import sys

from terminal import Terminal

PROMPT = re.compile(rb"(?:P|New p)assword of [^\r\n]*: ")

answers = sys.argv[1].encode().split(b"\n")
answered = 0
terminal = Terminal(sys.argv[2:])
while terminal.read():
    while answered < min(len(PROMPT.findall(terminal.shown)), len(answers)):
        answer = answers[answered]
        answered += 1
        terminal.type(answer if len(answer) == 1 and answer < b" " else answer + b"\n")
sys.exit(terminal.end())
