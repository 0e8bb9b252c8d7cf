#!/usr/bin/env python3
"""A proxy on a free loopback port that answers each request for a connection with a redirection."""

import http.server


class Handler(http.server.BaseHTTPRequestHandler):
    def log_message(self, *arguments):
        pass

    def do_CONNECT(self):
        self.send_response(302)
        self.send_header("Location", "http://portal.example/")
        self.send_header("Content-Length", "0")
        self.end_headers()


server = http.server.HTTPServer(("127.0.0.1", 0), Handler)
print(f"listening on http://127.0.0.1:{server.server_port}", flush=True)
server.serve_forever()
