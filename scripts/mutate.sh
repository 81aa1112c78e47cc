#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# mutate.sh [name...]: does the suite notice faults? Plants each of tests/mutants/*.patch, or those
# named, in a copy of the project below build/mutants/, one at a time, builds, and runs tests until one
# fails. Above a patch stand the sentence that it makes untrue and a line "In: FOLDER" with the tests to
# run first. Exits 1 where a fault went unnoticed or could not be planted.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
readonly kRoot=$PWD kPatches=$PWD/tests/mutants kCopy=$PWD/build/mutants/tree kLog=$PWD/build/mutants/log
export QT_QPA_PLATFORM=offscreen

die() {
  echo "mutate: $*" >&2
  exit 1
}

# The copy is what git tracks, as it is now. It keeps its build, so only what differs is copied: what a
# fault changed is newer then than what was built from it.
refresh_copy() {
  local file
  mkdir -p "$kCopy"
  while IFS= read -r file; do
    [[ ! -e $file ]] || cmp --quiet "$file" "$kCopy/$file" || cp --parents "$file" "$kCopy"
  done < <(git ls-files)
  while IFS= read -r file; do
    [[ -e $file ]] || rm "$kCopy/$file"
  done < <(find "$kCopy" -path "$kCopy/build" -prune -o -type f -printf '%P\n')
}

files_of() { sed -n 's|^+++ b/||p' "$1"; }
folder_of() { sed -n '/^---/q; s/^In: //p' "$1"; }
sentence_of() { sed -e '/^---/,$d' -e '/^In: /d' "$1" | tr '\n' ' ' | sed 's/ *$//'; }

build() { cmake --build --preset dev --parallel "$(nproc)" "$@" >"$kLog" 2>&1; }

# tests_fail <folder>: whether one of its tests does; with "." all are run.
tests_fail() {
  ! ctest --test-dir "build/dev/$1" --parallel "$(nproc)" --stop-on-failure >"$kLog" 2>&1
}

who_cried() {
  sed -n 's|^ *[0-9]*/[0-9]* Test *#[0-9]*: \([^ ]*\) .*\*\*\*.*|\1|p' "$kLog" | head -1
}

# notice <name> <folder>: 0 when its tests notice the fault, 1 when not, 2 when that cannot be told.
notice() {
  local name=$1 target=$2/all who
  [[ $2 != . ]] || target=all
  if ! build --target "$target"; then
    echo "BROKEN     $name does not compile, see $kLog"
    return 2
  fi
  tests_fail "$2" || return 1
  who=$(who_cried)
  if [[ -z $who ]]; then
    echo "BROKEN     $name keeps the tests from being run, see $kLog"
    return 2
  fi
  echo "noticed    $name by $who"
}

# judge <patch>: prints a line; 0 when the fault was noticed.
judge() {
  local patch=$1 name status
  name=$(basename "$patch" .patch)
  if ! patch --quiet --strip 1 --forward --no-backup-if-mismatch --reject-file=- <"$patch" >"$kLog"; then
    echo "STALE      $name does not apply any more"
    return 1
  fi
  notice "$name" "$(folder_of "$patch")"
  status=$?
  if [[ $status -eq 1 ]]; then
    notice "$name" .
    status=$?
    [[ $status -ne 1 ]] || echo "UNNOTICED  $name: $(sentence_of "$patch")"
  fi
  return "$status"
}

put_back() {
  local file
  while IFS= read -r file; do cp "$kRoot/$file" "$kCopy/$file"; done < <(files_of "$1")
}

names=("$@")
[[ $# -gt 0 ]] || mapfile -t names < <(basename --suffix .patch "$kPatches"/*.patch)
for name in "${names[@]}"; do
  [[ -f $kPatches/$name.patch ]] || die "there is no tests/mutants/$name.patch"
done
refresh_copy
cd "$kCopy" || die "there is no copy"
{ cmake --preset dev >"$kLog" 2>&1 && build; } || die "the project does not build, see $kLog"
! tests_fail . || die "without any fault $(who_cried) fails"

noticed=0
for name in "${names[@]}"; do
  ! judge "$kPatches/$name.patch" || noticed=$((noticed + 1))
  put_back "$kPatches/$name.patch"
done
echo "$noticed of ${#names[@]} faults noticed"
[[ $noticed -eq ${#names[@]} ]]
