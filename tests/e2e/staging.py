"""Stages what the Fix page finds, for tests and for pictures."""

import contextlib

PRINTERS = r"HKLM\System\CurrentControlSet\Control\Print\Printers"
DEVICES = r"HKCU\Software\Microsoft\Windows NT\CurrentVersion\Devices"
DEFAULT = r"HKCU\Software\Microsoft\Windows NT\CurrentVersion\Windows"


@contextlib.contextmanager
def network_printer(wine):
    """A network printer as the default one beside the virtual printer; gives a reader of the default printer."""
    names = {"Studio Queue": r"\\server\queue", "Microsoft Print to PDF": "PORTPROMPT:"}
    for name, port in names.items():
        for value, text in {"Name": name, "Port": port, "Printer Driver": "wineps.drv",
                            "Print Processor": "WinPrint"}.items():
            wine.set_registry(rf"{PRINTERS}\{name}", value, text)
        for value in ("Attributes", "Status"):
            wine.set_registry(rf"{PRINTERS}\{name}", value, 0, "REG_DWORD")
        wine.set_registry(DEVICES, name, f"winspool,{port}")
    wine.set_registry(DEFAULT, "Device", r"Studio Queue,winspool,\\server\queue")
    wine.shut_down()
    try:
        yield lambda: wine.run("reg", "query", DEFAULT, "/v", "Device")
    finally:
        for name in names:
            wine.delete_registry(rf"{PRINTERS}\{name}")
            wine.delete_registry(DEVICES, name)
        wine.delete_registry(DEFAULT, "Device")
        wine.shut_down()
