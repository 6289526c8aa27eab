#!/usr/bin/env bash
# Format and tidy: fails on the first file that clang-format would change or clang-tidy complains about.
# Needs a configured release build (./test makes one).
set -euo pipefail
cd "$(dirname "$0")/.."
git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run --Werror
git ls-files 'src/*.cpp' 'apps/*.cpp' | xargs run-clang-tidy-16 -quiet -p build/release >build/tidy.log 2>build/tidy.err || {
  grep -E -A4 '(error|warning):' build/tidy.log ||
    grep -v 'warnings generated' build/tidy.err # a crash of the tool itself
  exit 1
}
echo "lint: clean"
