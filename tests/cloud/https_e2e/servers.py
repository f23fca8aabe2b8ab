"""HTTPS servers on the loopback address: nginx for what servers normally do, and one of our own for
what they should not do. Each lives in the directory it is given and ends with its `close()`."""

import http.server
import os
import pathlib
import socket
import ssl
import subprocess
import threading
import time


def make_certificate(folder: pathlib.Path, name: str, *, subject="localhost", days=30, usage=None):
    """A self-signed certificate; returns its files. Negative `days` makes an expired one."""
    key, certificate = folder / f"{name}.key", folder / f"{name}.crt"
    request = folder / f"{name}.csr"
    extensions = folder / f"{name}.ext"
    extensions.write_text(
        f"subjectAltName=DNS:{subject}\n" + (f"extendedKeyUsage={usage}\n" if usage else ""))

    def openssl(*arguments):
        subprocess.run(["openssl", *map(str, arguments)], check=True, capture_output=True)

    openssl("req", "-newkey", "rsa:2048", "-nodes", "-subj", f"/CN={subject}", "-keyout", key,
            "-out", request)
    openssl("x509", "-req", "-in", request, "-signkey", key, "-days", days, "-extfile", extensions,
            "-out", certificate)
    return certificate, key


def free_port() -> int:
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def wait_for(condition, what: str, limit_seconds=10.0):
    deadline = time.monotonic() + limit_seconds
    while not condition():
        if time.monotonic() > deadline:
            raise TimeoutError(what)
        time.sleep(0.02)


def accepts_connections(port: int) -> bool:
    with socket.socket() as probe:
        return probe.connect_ex(("127.0.0.1", port)) == 0


class Nginx:
    """Serves `folder`/www on one port per certificate, and thanks for submissions."""

    def __init__(self, folder: pathlib.Path, certificates: dict, port=None):
        self.folder = folder
        self.www = folder / "www"
        self.www.mkdir()
        self.ports = {name: port or free_port() for name in certificates}
        servers = "\n".join(
            f"""server {{
                listen 127.0.0.1:{self.ports[name]} ssl;
                ssl_certificate {certificate};
                ssl_certificate_key {key};
                root {self.www};
                location = /api/mirelo/submit.php {{ return 200 'thanks'; }}
                location = /204 {{ return 204; }}
                location = /301 {{ return 301 /good.json; }}
                location = /404 {{ return 404; }}
                location = /500 {{ return 500 '{{"rules":[]}}'; }}
            }}""" for name, (certificate, key) in certificates.items())
        temporary = "\n".join(
            f"{kind}_temp_path {folder}/{kind};"
            for kind in ("client_body", "proxy", "fastcgi", "uwsgi", "scgi"))
        # As root, nginx would give its workers an account that cannot enter private directories.
        account = "user root;" if os.geteuid() == 0 else ""
        configuration = folder / "nginx.conf"
        configuration.write_text(f"""
            {account}
            daemon off; worker_processes 1; pid {folder}/pid; error_log {folder}/error.log;
            events {{}}
            http {{
                access_log {folder}/access.log;
                default_type application/json;
                {temporary}
                {servers}
            }}""")
        for port in self.ports.values():
            wait_for(lambda: not accepts_connections(port), f"port {port}, which another server holds")
        self.process = subprocess.Popen(
            ["/usr/sbin/nginx", "-p", str(folder), "-c", str(configuration),
             "-e", str(folder / "error.log")])
        for port in self.ports.values():
            wait_for(lambda: accepts_connections(port), "nginx")

    def requests(self) -> list:
        return (self.folder / "access.log").read_text().splitlines()

    def close(self):
        self.process.terminate()
        self.process.wait(timeout=10)


OK = b"HTTP/1.1 200 OK\r\n"
CHUNKED = OK + b"Transfer-Encoding: chunked\r\n\r\n"


class OddServer:
    """Answers each path in a way of its own, byte by byte where that takes long. Keeps what was submitted."""

    ANSWERS = {
        "/announces-more": OK + b'Content-Length: 1000\r\n\r\n{"rules":[',
        "/closes-mid-chunk": CHUNKED + b'64\r\n{"rules":[',
        "/no-length": OK + b'Connection: close\r\n\r\n{"rules":[]}',
        "/chunked": CHUNKED + b'6\r\n{"rule\r\n6\r\ns":[]}\r\n0\r\n\r\n',
        "/garbage": b"\x00\xff" * 500,
        "/never-answers": b"",
        "/drips-body": OK + b"Content-Length: 90\r\n\r\n",
        "/drips-headers": OK + b"X-Slow: ",
    }

    def __init__(self, certificate):
        self.submissions = []
        self.closing = threading.Event()
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(*certificate)
        outer = self

        class Handler(http.server.BaseHTTPRequestHandler):
            protocol_version = "HTTP/1.1"

            def setup(self):
                self.request = context.wrap_socket(self.request, server_side=True)
                super().setup()

            def log_message(self, *_):
                pass

            def do_GET(self):
                self.close_connection = True
                self.wfile.write(outer.ANSWERS[self.path])
                if self.path == "/never-answers":
                    outer.closing.wait(60)
                if self.path.startswith("/drips"):
                    for _ in range(90):
                        self.wfile.write(b"x")
                        if outer.closing.wait(1):
                            return

            def do_POST(self):
                body = self.rfile.read(int(self.headers["Content-Length"]))
                outer.submissions.append((self.path, dict(self.headers), body))
                self.wfile.write(OK + b"Content-Length: 2\r\n\r\nok")

        class Server(http.server.ThreadingHTTPServer):
            daemon_threads = True

            def handle_error(self, *_):
                pass

        self._server = Server(("127.0.0.1", 0), Handler)
        self.port = self._server.server_port
        threading.Thread(target=self._server.serve_forever, daemon=True).start()

    def close(self):
        self.closing.set()
        self._server.shutdown()
        self._server.server_close()


class SilentPort:
    """Accepts connections and never says a word, so that encryption is never agreed on."""

    def __init__(self):
        self._socket = socket.create_server(("127.0.0.1", 0))
        self.port = self._socket.getsockname()[1]

    def close(self):
        self._socket.close()
