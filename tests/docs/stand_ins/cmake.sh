#!/usr/bin/env bash
# Stands in for cmake where a document's command would configure or build: takes what cmake would take.
#   cmake --preset NAME ...
#   cmake --build FOLDER --target NAME...
set -euo pipefail
case "$1 ${3:-}" in
    --preset*)
        "$CMAKE" --list-presets | grep -q "\"$2\"" || {
            echo "there is no preset $2" >&2
            exit 1
        }
        ;;
    "--build --target")
        [ -d "$2" ] || {
            echo "there is no folder $2" >&2
            exit 1
        }
        shift 3
        ninja -C "$BINARIES" -t query "$@" >/dev/null # refuses a target that there is not
        ;;
    *)
        echo "cmake was called otherwise: $*" >&2
        exit 1
        ;;
esac
