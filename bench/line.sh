#!/usr/bin/env bash
# How steady frames arrive at the box: both players fade for a minute, and the box measures. Needs a release build and
# a quiet machine.
set -euo pipefail
cd "$(dirname "$0")/.."
bin=build/release/bin
seconds=${1:-60}

XDG_RUNTIME_DIR=$(mktemp -d)
export XDG_RUNTIME_DIR
trap 'rm -rf "$XDG_RUNTIME_DIR"' EXIT
"$bin/velgrove-show" print --json data/demo.kel | python3 -c '
import json, sys
show = json.load(sys.stdin)
for cues in show["colQueueData"]:
    for cue in cues["colQueueEntries"]:
        cue.update(Up=600, Down=600, Delay=0)
json.dump(show, sys.stdout)' >"$XDG_RUNTIME_DIR/fade.json"
"$bin/velgrove-show" make "$XDG_RUNTIME_DIR/fade.json" "$XDG_RUNTIME_DIR/fade.kel"

"$bin/velgrove-box" --quiet --name bench </dev/null &
box=$!
until [ -e "$XDG_RUNTIME_DIR/velgrove/boxes/bench" ]; do sleep 0.1; done
printf '0 go\n0 ab go\n' |
  "$bin/velgrove-show" play "$XDG_RUNTIME_DIR/fade.kel" - --until "${seconds}000" 2>/dev/null
kill "$box"
wait "$box" || true
