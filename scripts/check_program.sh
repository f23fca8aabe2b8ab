#!/usr/bin/env bash
# What must hold for the built program: check_program.sh MIRELO.EXE
exec python3 "$(dirname "${BASH_SOURCE[0]}")/check_program.py" "$@"
