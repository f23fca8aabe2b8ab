"""The transport against a real server: the probe runs under Wine, the server on this machine.

MIRELO_PROBE is the probe's path; MIRELO_RUN_WINDOWS the command that runs Windows programs. What a server says before
its headers end is for Windows to bound (64 KiB); Wine keeps all of it, so no test floods headers."""

import os
import subprocess
import time

import pytest
import servers

GOOD = b'{"version": 7, "rules": [{"id": "a-001", "title": "T\xc3\xa9"}]}'
TWO_MEBIBYTES = 2 * 1024 * 1024
WHOLE_REQUEST_LIMIT_MS = 30_000


class Probe:
    """A program that asks, and lives on until it is closed."""

    def __init__(self):
        self.process = subprocess.Popen([os.environ["MIRELO_RUN_WINDOWS"], os.environ["MIRELO_PROBE"]],
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def ask(self, port, path, method="GET", body=""):
        self.process.stdin.write(f"{port} {method} {path} {body}\n".encode())
        self.process.stdin.flush()
        return self

    def answer(self):
        """The body, and how long the caller was held."""
        held_ms, size = self.process.stdout.readline().split()
        return self.process.stdout.read(int(size)), int(held_ms)

    def close(self):
        self.process.stdin.close()
        assert self.process.wait(timeout=20) == 0


@pytest.fixture(scope="module")
def probe():
    program = Probe()
    yield program
    program.close()


@pytest.fixture(scope="module")
def odd(tmp_path_factory):
    server = servers.OddServer(tmp_path_factory.mktemp("odd"))
    server.www.mkdir()
    for name, body in {"good": GOOD, "empty": b"", "two-mebibytes": b"x" * TWO_MEBIBYTES,
                       "one-over": b"x" * (TWO_MEBIBYTES + 1)}.items():
        (server.www / name).write_bytes(body)
    yield server
    server.close()


@pytest.mark.parametrize("path, expected", [
    ("/good", [GOOD]),
    ("/two-mebibytes", [b"x" * TWO_MEBIBYTES]),
    ("/chunked", [b'{"rules":[]}']),
    *((path, [b""]) for path in ("/empty", "/301", "/404", "/500", "/garbage")),
    # Windows tells such an end from a good one, Wine does not; what came is no JSON either way.
    ("/announces-more", [b"", b'{"rules":[']),
], ids=lambda value: value if isinstance(value, str) else "")
def test_only_the_body_of_a_200_comes_back(odd, probe, path, expected):
    assert probe.ask(odd.port, path).answer()[0] in expected
    assert odd.requests[-1][1] == path


def test_an_answer_over_the_limit_is_cut(odd, probe):
    assert 0 < len(probe.ask(odd.port, "/one-over").answer()[0]) < TWO_MEBIBYTES + 1


def test_a_submission_arrives_as_it_was_sent(odd, probe):
    sent = '{"frames":[{"module":"\u4e2d\u6587 1.0"}]}'
    assert probe.ask(odd.port, "/api/mirelo/submit.php", "POST", sent).answer()[0] == b"ok"
    method, path, headers, body = odd.requests[-1]
    assert (method, path, body) == ("POST", "/api/mirelo/submit.php", sent.encode())
    assert (headers["Content-Type"], headers["User-Agent"]) == ("application/json", "Mirelo/0.1")


def test_nobody_holds_the_caller_or_goes_on_behind_his_back(odd):
    silent = servers.socket.create_server(("127.0.0.1", 0))  # accepts connections, agrees on no encryption
    asked = {name: (Probe().ask(port, path), shortest_ms, longest_ms) for name, port, path, shortest_ms, longest_ms in (
        ("closed port", servers.free_port(), "/", 0, 6_000),
        ("no encryption", silent.getsockname()[1], "/", 4_000, 16_000),
        ("never answers", odd.port, "/never-answers", 4_000, 16_000),
        ("drips body", odd.port, "/drips-body", 20_000, WHOLE_REQUEST_LIMIT_MS),
        ("drips headers", odd.port, "/drips-headers", 4_000, WHOLE_REQUEST_LIMIT_MS),
        ("endless extension", odd.port, "/endless-extension", 0, 16_000))}
    for name, (program, shortest_ms, longest_ms) in asked.items():
        body, held_ms = program.answer()
        assert body == b"", name
        assert shortest_ms <= held_ms <= longest_ms, name

    # The programs still live; their connections do not, nor do they take in any more.
    servers.wait_for(lambda: {"/never-answers", "/drips-body", "/drips-headers"} <= odd.ended, "connections end")
    before, start = odd.sent["/endless-extension"], time.monotonic()
    servers.wait_for(lambda: "/endless-extension" in odd.ended or time.monotonic() > start + 3, "a look at the flood")
    assert odd.sent["/endless-extension"] - before < 2 * TWO_MEBIBYTES
    for program, _, _ in asked.values():
        program.close()
    silent.close()
