#!/usr/bin/env python3
"""Runs a command on a terminal, with work that goes on until the terminal shows a text.

    with_work.py TEXT pipe PIPE FILE COMMAND...   what FILE holds comes through the named pipe PIPE
    with_work.py TEXT server COMMAND... URL       the answer at URL, which is added, comes bit by bit

It prints what the terminal showed, and ends with the exit status of the command; with 99 when the text did not
come within a minute.
"""

import socket
import sys
import threading

from terminal import Terminal

text, kind, *rest = sys.argv[1:]
came = threading.Event()


def give_pipe(path, file):
    with open(path, "wb") as pipe, open(file, "rb") as source:
        came.wait(60)
        pipe.write(source.read())


def give_answer(listener):
    connection, _ = listener.accept()
    connection.recv(65536)
    size = 100000
    connection.sendall(b"HTTP/1.1 200 OK\r\nContent-Length: %d\r\nConnection: close\r\n\r\n" % size)
    for _ in range(1200):
        if came.wait(0.05) or size < 200:
            break
        connection.sendall(b"x" * 50)
        size -= 50
    connection.sendall(b"x" * size)
    connection.close()


if kind == "pipe":
    work = threading.Thread(target=give_pipe, args=(rest.pop(0), rest.pop(0)), daemon=True)
else:
    listener = socket.create_server(("127.0.0.1", 0))
    rest.append(f"http://127.0.0.1:{listener.getsockname()[1]}/")
    work = threading.Thread(target=give_answer, args=(listener,), daemon=True)
terminal = Terminal(rest)
work.start()
while terminal.read():
    if text.encode() in terminal.shown:
        came.set()
status = terminal.end()
sys.exit(status if came.is_set() else 99)
