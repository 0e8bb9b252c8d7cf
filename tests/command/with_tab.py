#!/usr/bin/env python3
"""Types a line and the tab key into an interactive shell on a terminal, and waits for a text.

    with_tab.py PREPARATION LINE EXPECTED SHELL...

PREPARATION is a line that the shell gets first. The exit status is 0 when the terminal shows
EXPECTED after LINE was typed, and 1, with what it showed, when the shell has not shown it within a
minute.
"""

import os
import pty
import re
import select
import sys
import time

preparation, line, expected, *shell = sys.argv[1:]
READY = "ready-for-the-line"

child, terminal = pty.fork()
if child == 0:
    os.environ["TERM"] = "xterm"
    os.execvp(shell[0], shell)

shown = b""
end = time.monotonic() + 60


def wait_for(text, start):
    """Reads until the text is shown after `start`. False when time is up or the shell has ended."""
    global shown
    # The bell and the changes of colour come in the middle of words.
    while text.encode() not in re.sub(rb"\a|\x1b\[[0-9;?]*[A-Za-z]", b"", shown[start:]):
        if not select.select([terminal], [], [], max(0.0, end - time.monotonic()))[0]:
            return False
        try:
            got = os.read(terminal, 4096)
        except OSError:
            return False
        if not got:
            return False
        shown += got
    return True


# In two parts, so that the echo of the line is not taken for what it prints.
os.write(terminal, f"{preparation}; printf '%s-%s\\n' ready for-the-line\n".encode())
found = wait_for(READY, 0)
if found:
    start = len(shown)
    os.write(terminal, line.encode() + b"\t")
    found = wait_for(expected, start)
os.close(terminal)
if not found:
    sys.stdout.buffer.write(shown)
os.waitpid(child, 0)
sys.exit(0 if found else 1)
