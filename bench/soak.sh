#!/usr/bin/env bash
# The desk itself through a long evening, in real time on a virtual display: bench/soak.sh [MINUTES]
exec python3 "$(dirname "$0")/soak/live.py" "$@"
