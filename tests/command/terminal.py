"""A command on a terminal of its own, for the scripts beside this one."""

import fcntl
import os
import pty
import struct
import sys
import termios


class Terminal:
    """The terminal of one command, with all that it has shown so far in `shown`."""

    def __init__(self, command, columns=None):
        self.shown = b""
        self.child, self.terminal = pty.fork()
        if self.child == 0:
            # The width is set by the command's own side, before it runs.
            if columns is not None:
                fcntl.ioctl(1, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
            os.execvp(command[0], command)

    def read(self):
        """Waits until more is shown. False when nothing will be, since the command has closed the terminal."""
        try:
            got = os.read(self.terminal, 65536)
        except OSError:  # How Linux says that the other side is closed.
            return False
        self.shown += got
        return bool(got)

    def type(self, text):
        os.write(self.terminal, text)

    def end(self):
        """Prints what was shown, with the line ends of a file, and gives the exit status of the command."""
        sys.stdout.buffer.write(self.shown.replace(b"\r\n", b"\n"))
        sys.stdout.buffer.flush()
        return os.waitstatus_to_exitcode(os.waitpid(self.child, 0)[1]) % 256
