#!/usr/bin/env bash
# Makes the package and looks at it: whether it holds what packaging/contents.txt lists, and its pages name every option.
set -euo pipefail
cd "$(dirname "$0")/.."
made=build/package-check
rm -rf "$made"
mkdir -p "$made"

package=$(./package | tail -n 1)

# Pictures and pages of the manual come and go, all else has its line.
dpkg-deb --contents "$package" | awk '!/\/$/ && !/velgrove\/manual\// { print $1, $2, $6 }' | LC_ALL=C sort -k 3 >"$made/contents.txt"
diff -u packaging/contents.txt "$made/contents.txt" ||
  { echo "check: the package holds something else; if it should, copy $made/contents.txt" >&2; exit 1; }

dpkg-deb --extract "$package" "$made/tree"
for program in velgrove-show velgrove-box; do
  page=$(zcat "$made/tree/usr/share/man/man1/$program.1.gz" | sed 's/\\-/-/g')
  help=$("$made/tree/usr/bin/$program" --help)
  [ "$program" = velgrove-box ] || for command in $(sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p' <<<"$help"); do
    grep -qx ".B $command" <<<"$page" || { echo "check: $program.1 doesn't tell of $command" >&2; exit 1; }
    help+=$("$made/tree/usr/bin/$program" "$command" --help)
  done
  for option in $(grep -oE -- '(^|[ ,[])--[a-z-]+' <<<"$help" | tr -d ' ,[' | sort -u); do
    grep -qF -- "$option" <<<"$page" || { echo "check: $program.1 doesn't tell of $option" >&2; exit 1; }
  done
done

if command -v lintian >/dev/null; then lintian --allow-root --fail-on error,warning "$package"; fi
echo "check: $package holds what it should"
