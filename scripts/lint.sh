#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# lint.sh [file...]: form, static analysis and the house's own rules, over the whole project or, for
# the first two, the given files. ./dev lint installs the tools and configures the dev preset first.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/sources.sh
failed=0

if [[ $# -gt 0 ]]; then
  files=("$@")
else
  mapfile -t files < <(source_files)
fi

# step <title> <command> [argument...]; all steps run, so that one lint tells everything.
step() {
  local title=$1
  shift
  echo "-- $title"
  "$@" && return
  echo "-- $title: FAILED" >&2
  failed=1
}

step "clang-format, ${#files[@]} files" clang-format-14 --dry-run --Werror "${files[@]}"

# The tests are left out: what the analysis finds there is the test library's macros.
mapfile -t analysed < <(printf '%s\n' "${files[@]}" | grep -E '^(src|lab)/.*\.cpp$')
if [[ ${#analysed[@]} -gt 0 ]]; then
  step "clang-tidy, ${#analysed[@]} files" scripts/tidy.sh "${analysed[@]}"
fi

step "include directions" scripts/check_includes.sh
step "orphan tests" scripts/check_orphan_tests.sh

[[ $failed -eq 1 ]] || echo "Nothing to complain about."
exit $failed
