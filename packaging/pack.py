"""Packs a built mirelo.exe: pack.py BUILD_FOLDER OUTPUT_FOLDER UNIX_TIME

The zip's bytes depend on the program, the texts beside this file and in docs/first-aid, and the time given, on nothing
else."""

import hashlib
import pathlib
import re
import sys
import time
import zipfile

import first_aid

HERE = pathlib.Path(__file__).resolve().parent


def sha256(data):
    return hashlib.sha256(data).hexdigest()


def settings_of(build):
    """What the build was configured with, by the names that the templates use."""
    cache = dict(re.findall(r"^(\w+):\w+=(.*)$", (build / "CMakeCache.txt").read_text(), re.MULTILINE))
    return {"VERSION": cache["CMAKE_PROJECT_VERSION"], "WEBSITE": cache["MIRELO_WEBSITE"].rstrip("/"),
            "MAKER": cache["MIRELO_MAKER"]}


def filled(template, values):
    return re.sub(r"@(\w+)@", lambda name: values[name.group(1)], template.read_text())


def write_zip(path, files, when):
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as archive:
        for name, data in files.items():
            entry = zipfile.ZipInfo(name, date_time=time.gmtime(when)[:6])
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.create_system = 0  # no permissions of the machine that packed it
            archive.writestr(entry, data)


def main(build, output, when):
    values = settings_of(build)
    files = {
        "mirelo.exe": (build / "mirelo.exe").read_bytes(),
        "readme.txt": filled(HERE / "readme.txt", values).replace("\n", "\r\n").encode("ascii"),
        "first-aid.html": first_aid.page(),
    }
    files["checksums.txt"] = "".join(f"{sha256(data)}  {name}\n" for name, data in files.items()).encode()

    output.mkdir(parents=True, exist_ok=True)
    package = output / f"mirelo-{values['VERSION']}-windows-x64.zip"
    write_zip(package, files, when)
    digest = sha256(package.read_bytes())
    (output / f"{package.name}.sha256").write_text(f"{digest}  {package.name}\n")

    values.update(ZIP_NAME=package.name, ZIP_SHA256=digest.upper())
    manifests = output / "winget"
    manifests.mkdir(exist_ok=True)
    for kind, name in (("version", ""), ("installer", ".installer"), ("locale.en-US", ".locale.en-US")):
        text = filled(HERE / "winget" / f"{kind}.yaml", values)
        (manifests / f"Mirelo.Mirelo{name}.yaml").write_text(text)
    print(package)


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), int(sys.argv[3]))
