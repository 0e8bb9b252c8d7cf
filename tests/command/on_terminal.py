#!/usr/bin/env python3
"""Runs a command with its output on a terminal of a given width, and prints what came there.

    on_terminal.py COLUMNS COMMAND...

It ends with the exit status of the command.
"""

import sys

from terminal import Terminal

terminal = Terminal(sys.argv[2:], int(sys.argv[1]))
while terminal.read():
    pass
sys.exit(terminal.end())
