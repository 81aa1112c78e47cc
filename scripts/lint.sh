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

step() { printf -- '-- %s\n' "$*"; }

step "clang-format, ${#files[@]} files"
clang-format-14 --dry-run --Werror "${files[@]}" || failed=1

# The tests are left out: what the analysis finds there is the test library's macros.
mapfile -t analysed < <(printf '%s\n' "${files[@]}" | grep -E '^(src|tools|bench)/.*\.cpp$')
step "clang-tidy, ${#analysed[@]} files"
if [[ ${#analysed[@]} -gt 0 ]]; then
  scripts/tidy.sh "${analysed[@]}" || failed=1
fi

step "include directions"
scripts/check_includes.sh || failed=1
step "orphan tests"
scripts/check_orphan_tests.sh || failed=1

[[ $failed -eq 0 ]] && echo "Nothing to complain about." || echo "lint: see above." >&2
exit $failed
