#!/usr/bin/env python3
"""Runs a command with its output on a terminal of a given width, and prints what came there.

    on_terminal.py COLUMNS COMMAND...

It ends with the exit status of the command.
"""

import fcntl
import os
import pty
import struct
import sys
import termios

child, terminal = pty.fork()
if child == 0:
    # The width is set by the command's own side, before it runs.
    fcntl.ioctl(1, termios.TIOCSWINSZ, struct.pack("HHHH", 24, int(sys.argv[1]), 0, 0))
    os.execvp(sys.argv[2], sys.argv[2:])
shown = b""
while True:
    try:
        got = os.read(terminal, 65536)
    except OSError:  # How Linux says that the other side is closed.
        break
    if not got:
        break
    shown += got
sys.stdout.buffer.write(shown.replace(b"\r\n", b"\n"))
sys.stdout.buffer.flush()
sys.exit(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]) % 256)
