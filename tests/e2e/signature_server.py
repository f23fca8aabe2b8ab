"""The signature server that mirelo_local.exe asks, on this machine, with a certificate that nobody should trust."""

import contextlib
import json
import pathlib
import sys

from driver import BUILD

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "cloud" / "https_e2e"))
from servers import OddServer  # noqa: E402

PROGRAM = BUILD / "tests" / "mirelo_local.exe"


def rule(ident, title, category="third_party"):
    return {"id": ident, "category": category, "module": "screenhook", "title": title, "severity": "high",
            "advice": "Close the capture tool."}


def rule_document(version, *rules):
    return json.dumps({"version": version, "rules": rules})


class SignatureServer(OddServer):
    def __init__(self, folder):
        super().__init__(folder, port=443)
        self.document = self.www / "api" / "mirelo" / "signatures.php"
        self.document.parent.mkdir(parents=True)

    def offer(self, text):
        self.document.write_text(text)

    def submissions(self):
        return [body for method, _, _, body in self.requests if method == "POST"]


@contextlib.contextmanager
def signature_server(folder, wine):
    """Runs while the program has no rule cache and its network switch is as after installation."""
    def forget():
        wine.delete_registry(r"HKCU\Software\Mirelo")
        (wine.tool_folder / "signatures.cache.json").unlink(missing_ok=True)

    forget()
    server = SignatureServer(folder)
    try:
        yield server
    finally:
        server.close()
        forget()
