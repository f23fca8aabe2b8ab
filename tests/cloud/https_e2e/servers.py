"""HTTPS servers on the loopback address that do what servers should not do. Each ends with its `close()`."""

import http.server
import pathlib
import socket
import ssl
import subprocess
import threading
import time


def make_certificate(folder: pathlib.Path, *, subject="elsewhere.example", days=-1, usage="clientAuth"):
    """A certificate with every fault there is: nobody signed it, it names somebody else, it has expired, it is not
    for servers. Returns its files."""
    key, certificate, request, extensions = (folder / f"server.{kind}" for kind in ("key", "crt", "csr", "ext"))
    extensions.write_text(f"subjectAltName=DNS:{subject}\nextendedKeyUsage={usage}\n")
    for command in (f"req -newkey rsa:2048 -nodes -subj /CN={subject} -keyout {key} -out {request}",
                    f"x509 -req -in {request} -signkey {key} -days {days} -extfile {extensions} -out {certificate}"):
        subprocess.run(["openssl", *command.split()], check=True, capture_output=True)
    return certificate, key


def free_port() -> int:
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


OK = b"HTTP/1.1 200 OK\r\n"
CHUNKED = OK + b"Transfer-Encoding: chunked\r\n\r\n"


class OddServer:
    """Answers each path in a way of its own, endlessly where `ENDLESS` says so: a piece, and the seconds after it.
    Other paths are files below `www`, sent as they should be."""

    ANSWERS = {
        "/301": b"HTTP/1.1 301 Moved\r\nLocation: /chunked\r\nContent-Length: 2\r\n\r\nno",
        "/500": b"HTTP/1.1 500 Broken\r\nContent-Length: 2\r\n\r\n{}",
        "/announces-more": OK + b'Content-Length: 1000\r\n\r\n{"rules":[',
        "/chunked": CHUNKED + b'6\r\n{"rule\r\n6;x=y\r\ns":[]}\r\n0\r\n\r\n',
        "/garbage": b"\x00\xff" * 500,
        "/never-answers": b"",
        "/drips-body": OK + b"Content-Length: 90\r\n\r\n",
        "/drips-headers": OK + b"X-Slow: ",
        "/endless-extension": CHUNKED + b"5;",
    }
    ENDLESS = {"/never-answers": (b"", 1), "/drips-body": (b"x", 1), "/drips-headers": (b"x", 1),
               "/endless-extension": (b"x" * 65536, 0)}

    def __init__(self, folder: pathlib.Path, port=0):
        self.www = folder / "www"
        self.requests = []  # (method, path, headers, body)
        self.sent = {}  # bytes, by endless path
        self.ended = set()  # endless paths whose client has gone
        self.closing = threading.Event()
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(*make_certificate(folder))
        outer = self

        class Handler(http.server.BaseHTTPRequestHandler):
            protocol_version = "HTTP/1.1"

            def setup(self):
                self.request = context.wrap_socket(self.request, server_side=True)
                super().setup()

            def log_message(self, *_):
                pass

            def answer(self):
                body = self.rfile.read(int(self.headers.get("Content-Length", 0)))
                outer.requests.append((self.command, self.path, dict(self.headers), body))
                self.close_connection = True
                if self.path in outer.ANSWERS:
                    self.wfile.write(outer.ANSWERS[self.path])
                    if self.path in outer.ENDLESS:
                        self.go_on(*outer.ENDLESS[self.path])
                    return
                file = outer.www / self.path[1:]
                found = b"ok" if self.command == "POST" else file.read_bytes() if file.is_file() else None
                self.send_response(404 if found is None else 200)
                self.send_header("Content-Length", str(len(found or b"")))
                self.end_headers()
                self.wfile.write(found or b"")

            do_GET = do_POST = answer

            def go_on(self, piece, seconds):
                self.request.settimeout(120)
                try:
                    while not outer.closing.wait(seconds):
                        self.wfile.write(piece)
                        outer.sent[self.path] = outer.sent.get(self.path, 0) + len(piece)
                        if seconds and self.has_gone():
                            break
                except OSError:
                    pass
                outer.ended.add(self.path)

            def has_gone(self):
                self.request.setblocking(False)
                try:
                    return self.request.recv(1) == b""
                except ssl.SSLWantReadError:
                    return False
                except OSError:
                    return True
                finally:
                    self.request.setblocking(True)

        class Server(http.server.ThreadingHTTPServer):
            daemon_threads = True

            def handle_error(self, *_):
                pass

        self._server = Server(("127.0.0.1", port), Handler)
        self.port = self._server.server_port
        threading.Thread(target=self._server.serve_forever, daemon=True).start()

    def close(self):
        self.closing.set()
        self._server.shutdown()
        self._server.server_close()


def wait_for(condition, what: str, limit_seconds=10.0):
    deadline = time.monotonic() + limit_seconds
    while not condition():
        assert time.monotonic() < deadline, what
        time.sleep(0.02)
