#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# check_includes.sh [root]: every include of the project points in a direction that
# scripts/include_directions.txt allows, folders without Qt include none of its headers, and
# docs/ARCHITECTURE.md shows the same table between its two include-directions markers.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/sources.sh"
cd "${1:-$(dirname "${BASH_SOURCE[0]}")/..}"
readonly kTable=scripts/include_directions.txt
failed=0

mapfile -t files < <(source_files)
[[ ${#files[@]} -gt 0 ]] || { echo "check_includes: no sources in $PWD" >&2; exit 1; }

awk '
  function complain(text) { print FILENAME ":" FNR ": " text; failed = 1 }
  function folder_of(path) { return match(path, /\/[^\/]*$/) ? substr(path, 1, RSTART - 1) : "" }
  FNR == 1 { from = family(folder_of(FILENAME)) }
  # Folders of src/ and lab/ are named without them; below tests/ all are one family.
  function family(folder) {
    if (sub(/^(src|lab)\//, "", folder)) return folder
    sub(/\/.*/, "", folder)
    return folder
  }
  FILENAME == table {
    sub(/#.*/, "")
    if (NF == 0) next
    known[$1] = 1
    without_qt[$1] = $2 == "no"
    for (i = 3; i <= NF; ++i) allowed[$1, $i] = 1
    next
  }
  FNR == 1 && !(from in known) { complain("folder " from " has no line in " table) }
  /^[ \t]*#[ \t]*include[ \t]*["<]/ && from in known {
    quoted = $0 ~ /^[^"<]*"/
    name = $0
    sub(/^[^"<]*["<]/, "", name)
    sub(/[">].*/, "", name)
    if (without_qt[from] && name ~ /^Q/) complain(from " does without Qt, so never <" name ">")
    to = folder_of(name)
    if (quoted && to == "" && name !~ /\.moc$/) complain("\"" name "\" says no folder")
    if (to == "" || to == from || (!quoted && !(to in known))) next
    top = to
    sub(/\/.*/, "", top)
    if ((from, to) in allowed || (from, top) in allowed && !(top in known)) next
    if ((from, "*") in allowed && to in known) next
    complain(from " may not include " to " (\"" name "\")")
  }
  END { exit failed }
' table=$kTable $kTable "${files[@]}" || failed=1

# The lines of the table without comments, fences and differences of spacing.
table_lines() { sed -e 's/#.*//' -e '/^```/d' -e 's/[[:space:]]\+/ /g' -e 's/ $//' -e '/^$/d' "$@"; }

readonly kDocument=docs/ARCHITECTURE.md
if [[ -f $kDocument ]]; then
  shown=$(sed -n '/^<!-- include-directions -->$/,/^<!-- \/include-directions -->$/p' $kDocument |
    sed '/^<!--/d' | table_lines)
  diff <(table_lines $kTable) - <<<"$shown" >/dev/null || {
    echo "$kDocument: its table of include directions differs from $kTable:"
    diff <(table_lines $kTable) - <<<"$shown" || failed=1
  }
fi
exit $failed
