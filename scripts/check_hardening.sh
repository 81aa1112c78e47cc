#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# check_hardening.sh <file>...: whether these programs and libraries, built for Linux, bear what
# cmake/QuillonHardening.cmake gives them. Stripped ones tell it too.
set -euo pipefail
export LC_ALL=C
failed=0

# want <file> <what it lacks otherwise> <text> <pattern>
want() {
  grep -Eq -- "$4" <<<"$3" && return
  echo "$1: $2" >&2
  failed=1
}

check() {
  local file=$1 head segments dynamic symbols
  head=$(readelf --file-header --wide "$file")
  segments=$(readelf --segments --wide "$file")
  dynamic=$(readelf --dynamic --wide "$file")
  symbols=$(readelf --dyn-syms --wide "$file")
  want "$file" 'lies at a fixed place: it is neither a library nor linked with -pie' "$head" \
    'Type: +DYN'
  want "$file" 'its stack can be executed, or it does not say' "$segments" 'GNU_STACK .* RW +0x'
  want "$file" 'no part of it is read-only after the start (-z relro)' "$segments" 'GNU_RELRO'
  want "$file" 'its functions are bound late, so their table stays writable (-z now)' "$dynamic" \
    'BIND_NOW|FLAGS_1.* NOW'
  want "$file" 'no function guards its stack (-fstack-protector-strong)' "$symbols" \
    ' __stack_chk_fail\b'
  # Some call always is: the compiler leaves out the check only where it knows the outcome, and the
  # standard library hands vsnprintf on by its plain name.
  want "$file" 'calls of the C library are not checked (_FORTIFY_SOURCE)' "$symbols" ' __[a-z]+_chk\b'
  want "$file" 'the containers do not check (_GLIBCXX_ASSERTIONS)' "$symbols" \
    '__glibcxx_assert_fail'
}

[[ $# -gt 0 ]] || {
  echo "check_hardening.sh: name the programs and libraries" >&2
  exit 2
}
for file in "$@"; do
  check "$file"
done
exit $failed
