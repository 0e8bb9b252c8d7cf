#!/usr/bin/env python3
"""Runs a command on a terminal of 80 columns, waits for texts there, and types an answer to each.

    at_terminal.py STEPS COMMAND...

Each line of STEPS is a text, a tab, and what is typed once the text is shown after the one before; \\xNN and \\n
in it are characters, and kill=NAME sends the command a signal instead. It prints what the terminal showed, and
then whether the terminal shows what is typed. It ends with the exit status of the command, 128 and its number
after a signal; with 99 when a text did not come within a minute.
"""

import fcntl
import os
import pty
import select
import signal
import struct
import sys
import termios
import time

steps = [line.split("\t") for line in sys.argv[1].split("\n") if line]
child, terminal = pty.fork()
if child == 0:
    fcntl.ioctl(1, termios.TIOCSWINSZ, struct.pack("HHHH", 24, 80, 0, 0))
    # Python ignores it.
    signal.signal(signal.SIGPIPE, signal.SIG_DFL)
    os.environ["TERM"] = "xterm"
    os.execvp(sys.argv[2], sys.argv[2:])
shown = b""
end = time.monotonic() + 60


def read():
    """Reads once. False when time is up or the other side is closed, which Linux says by an error."""
    global shown
    if not select.select([terminal], [], [], max(0.0, end - time.monotonic()))[0]:
        return False
    try:
        got = os.read(terminal, 4096)
    except OSError:
        return False
    shown += got
    return bool(got)


start = 0
missing = None
for text, keys in steps:
    while text.encode() not in shown[start:]:
        if not read():
            missing = text
            break
    if missing is not None:
        break
    start = shown.index(text.encode(), start) + len(text)
    if keys.startswith("kill="):
        os.kill(child, signal.Signals["SIG" + keys[5:]])
        continue
    os.write(terminal, keys.encode().decode("unicode_escape").encode())
while missing is None and read():
    pass
echo = termios.tcgetattr(terminal)[3] & termios.ECHO
os.close(terminal)
status = os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])
sys.stdout.buffer.write(shown)
print(f"\nthe terminal {'shows' if echo else 'hides'} what is typed")
if missing is not None:
    print(f"not shown: {missing}")
    sys.exit(99)
sys.exit(status if status >= 0 else 128 - status)
