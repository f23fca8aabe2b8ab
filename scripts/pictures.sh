#!/usr/bin/env bash
# Remakes every picture of the documents from the real window: pictures.sh [SCENE...]
# Without a scene, all of them: capture check_and_clean slim quiet_pages languages.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/setup.sh
scripts/build.sh windows
exec python3 -B scripts/pictures.py "$@"
