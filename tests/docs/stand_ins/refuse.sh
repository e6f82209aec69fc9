#!/usr/bin/env bash
# Stands in for what no document's command shall call here.
echo "a document's command calls ${0##*/} $*" >&2
exit 1
