#!/usr/bin/env python3
"""A web server on a free loopback port that misbehaves as its paths say, for tests of exchanges.

It prints "listening on URL", and then a line for each request that it will not answer.
"""

import http.server
import shutil
import sys
import threading
import urllib.parse


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *arguments):
        pass

    def answer(self, status, body, claimed=None, headers=()):
        self.send_response(status)
        self.send_header("Content-Length", str(len(body) if claimed is None else claimed))
        for name, value in headers:
            self.send_header(name, value)
        self.end_headers()
        self.wfile.write(body)

    def handle_any(self):
        body = self.rfile.read(int(self.headers.get("Content-Length", 0)))
        # A proxy is asked for a whole URL.
        _, action, *rest = urllib.parse.urlsplit(self.path).path.split("/")
        self.close_connection = True
        if action == "echo":
            kind = self.headers.get("Content-Type", "none")
            self.answer(200, body or b"fetched\n", headers=[("X-Got", kind), ("X-Two", "2")])
        elif action == "status":
            self.answer(int(rest[0]), b"refused\n", headers=[("Location", "/echo")])
        elif action == "empty":
            self.answer(200, b"")
        elif action == "cut":
            self.answer(200, b"half", claimed=1000)
        elif action == "file":
            with open(rest[0], "rb") as file:
                self.answer(200, file.read())
        elif action == "choose":
            # choose/MARK/FILE/OTHER: a file for requests that have the mark, and one for others.
            with open(rest[1 if rest[0].encode() in body else 2], "rb") as file:
                self.answer(200, file.read())
        elif action == "keep":
            with open(rest[0], "wb") as file:
                file.write(body)
            self.answer(500, b"kept\n")
        elif action == "remove":
            shutil.rmtree(rest[0])
            self.answer(200, body or b"removed\n")
        elif action == "garbage":
            self.wfile.write(b"this is no HTTP\r\n\r\n")
        elif action == "never":
            print("waiting", flush=True)
            stopped.wait()

    do_GET = do_POST = handle_any


stopped = threading.Event()
server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
server.daemon_threads = True
print(f"listening on http://127.0.0.1:{server.server_port}", flush=True)
try:
    server.serve_forever()
except KeyboardInterrupt:
    sys.exit(0)
