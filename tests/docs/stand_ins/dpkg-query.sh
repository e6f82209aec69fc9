#!/usr/bin/env bash
# Stands in for dpkg-query -W -f=FORMAT NAME...: every package is installed.
shift 2
printf '%s=ii  ' "$@"
