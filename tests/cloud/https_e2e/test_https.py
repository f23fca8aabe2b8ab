"""The transport against real servers: the probe runs under Wine, the servers on this machine.

MIRELO_PROBE is the probe's path; MIRELO_RUN_WINDOWS the command that runs Windows programs."""

import os
import subprocess
import tempfile

import pytest
import servers

GOOD = b'{"version": 7, "rules": [{"id": "a-001", "title": "T\xc3\xa9"}]}'
TWO_MEBIBYTES = 2 * 1024 * 1024
WHOLE_REQUEST_LIMIT_MS = 30_000

CERTIFICATES = {
    "self-signed": {},
    "wrong-name": {"subject": "elsewhere.example"},
    "expired": {"days": -1},
    "wrong-usage": {"usage": "clientAuth"},
}


class Request:
    """A probe that asks."""

    def __init__(self, port, path, method="GET", body=b""):
        command = [os.environ["MIRELO_RUN_WINDOWS"], os.environ["MIRELO_PROBE"], "localhost", str(port), method, path]
        with tempfile.TemporaryFile() as stdin:
            stdin.write(body)
            stdin.seek(0)
            self._process = subprocess.Popen(command, stdin=stdin, stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def answer(self):
        """The body, and how long the caller was held."""
        body, held_ms = self._process.communicate(timeout=60)
        assert self._process.returncode == 0
        return body, int(held_ms.split()[-1])


@pytest.fixture(scope="module")
def nginx(tmp_path_factory):
    folder = tmp_path_factory.mktemp("nginx")
    server = servers.Nginx(folder, {
        name: servers.make_certificate(folder, name, **traits)
        for name, traits in CERTIFICATES.items()
    })
    for name, body in {
            "good.json": GOOD,
            "not-json.txt": b"<html>no</html>",
            "empty": b"",
            "two-mebibytes": b"x" * TWO_MEBIBYTES,
            "one-over": b"x" * (TWO_MEBIBYTES + 1),
    }.items():
        (server.www / name).write_bytes(body)
    yield server
    server.close()


@pytest.fixture(scope="module")
def odd(tmp_path_factory):
    server = servers.OddServer(
        servers.make_certificate(tmp_path_factory.mktemp("odd"), "odd"))
    yield server
    server.close()


@pytest.mark.parametrize("certificate", CERTIFICATES)
def test_no_certificate_is_refused(nginx, certificate):
    body, _ = Request(nginx.ports[certificate], "/good.json").answer()
    assert body == GOOD


@pytest.mark.parametrize("path, expected", [
    ("/not-json.txt", b"<html>no</html>"),
    ("/empty", b""),
    ("/204", b""),
    ("/301", b""),
    ("/404", b""),
    ("/500", b""),
    ("/two-mebibytes", b"x" * TWO_MEBIBYTES),
], ids=lambda value: value if isinstance(value, str) else "")
def test_only_the_body_of_a_200_comes_back(nginx, path, expected):
    body, _ = Request(nginx.ports["self-signed"], path).answer()
    assert body == expected
    assert f"GET {path} " in nginx.requests()[-1]


def test_an_answer_over_the_limit_is_cut(nginx):
    body, _ = Request(nginx.ports["self-signed"], "/one-over").answer()
    assert 0 < len(body) < TWO_MEBIBYTES + 1


@pytest.mark.parametrize("path, expected", [
    ("/no-length", [b'{"rules":[]}']),
    ("/chunked", [b'{"rules":[]}']),
    ("/garbage", [b""]),
    # Windows tells such an end from a good one, Wine does not; what came is no JSON either way.
    ("/announces-more", [b"", b'{"rules":[']),
    ("/closes-mid-chunk", [b"", b'{"rules":[']),
], ids=lambda value: value if isinstance(value, str) else "")
def test_answers_of_odd_shapes(odd, path, expected):
    body, _ = Request(odd.port, path).answer()
    assert body in expected


def test_a_submission_arrives_as_it_was_sent(odd):
    sent = '{"frames":[{"module":"\u4e2d\u6587"}]}'.encode()
    answer, _ = Request(odd.port, "/api/mirelo/submit.php", "POST", sent).answer()
    assert answer == b"ok"
    path, headers, body = odd.submissions[-1]
    assert (path, body) == ("/api/mirelo/submit.php", sent)
    assert headers["Content-Type"] == "application/json"
    assert headers["User-Agent"] == "Mirelo/0.1"


def test_nobody_holds_the_caller(odd):
    silent = servers.SilentPort()
    closed_port = servers.free_port()
    asked = {
        "closed port": (Request(closed_port, "/"), 0, 6_000),
        "no encryption": (Request(silent.port, "/"), 4_000, 16_000),
        "never answers": (Request(odd.port, "/never-answers"), 4_000, 16_000),
        "drips body": (Request(odd.port, "/drips-body"), 20_000, WHOLE_REQUEST_LIMIT_MS),
        "drips headers": (Request(odd.port, "/drips-headers"), 4_000, WHOLE_REQUEST_LIMIT_MS),
    }
    for name, (answer, shortest_ms, longest_ms) in asked.items():
        body, held_ms = answer.answer()
        assert body == b"", name
        assert shortest_ms <= held_ms <= longest_ms, name
    silent.close()
