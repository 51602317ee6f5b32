# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""A language model's chat interface on loopback that always answers the same text, or nothing.

On a port of its own it is named in the backend's environment. On the usual one it is found: it then
lists its one model as well.
"""

import http.server
import json
import threading
import time


class ChatServer:
    USUAL_PORT = 11434

    def __init__(self, answer, port=0):
        self.answer = answer
        self.silent = False
        self.prompts = []
        outer = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_POST(self):
                body = self.rfile.read(int(self.headers["Content-Length"]))
                outer.prompts.append(json.loads(body))
                while outer.silent:
                    time.sleep(0.05)
                chunk = {"choices": [{"delta": {"content": outer.answer}}]}
                self.send_response(200)
                self.send_header("Content-Type", "text/event-stream")
                self.send_header("Connection", "close")
                self.end_headers()
                self.wfile.write(b"data: " + json.dumps(chunk).encode() + b"\n\ndata: [DONE]\n\n")

            def do_GET(self):
                body = json.dumps({"models": [{"name": "tiny-writer"}]}).encode()
                self.send_response(200)
                self.send_header("Content-Length", str(len(body)))
                self.end_headers()
                self.wfile.write(body)

            def log_message(self, *_):
                pass

        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", port), Handler)
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    @property
    def environment(self):
        """What makes quillet-backend use this server."""
        port = self.server.server_address[1]
        return {"QUILLET_MODEL_URL": f"http://127.0.0.1:{port}/v1", "QUILLET_MODEL_NAME": "test"}

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.server.shutdown()
        self.server.server_close()
