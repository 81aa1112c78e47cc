#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# tidy.sh <file.cpp>...: clang-tidy over these files, several at a time. A file that passed leaves a
# stamp in build/lint/ and is skipped as long as it, every header of the project that it reaches, its
# way of being compiled and the checks stay the same. A file that is not built here (another
# platform's) is left out.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/sources.sh
readonly kStamps=build/lint kDatabase=build/lint/compile_commands.json

# Prints "file header..." per argument: the headers below src/ that it includes, directly or not.
headers_reached() {
  source_files | grep '\.h$' | awk '
    function read_includes(path,    line, name) {
      if (path in includes) return
      includes[path] = ""
      while ((getline line < path) > 0) {
        if (line !~ /^[ \t]*#[ \t]*include[ \t]*"/) continue
        split(line, part, "\"")
        name = "src/" part[2]
        if (name in header) includes[path] = includes[path] " " name
      }
      close(path)
    }
    function reach(path,    names, n, i) {
      read_includes(path)
      n = split(includes[path], names, " ")
      for (i = 1; i <= n; ++i) {
        if (names[i] in seen) continue
        seen[names[i]] = 1
        found = found " " names[i]
        reach(names[i])
      }
    }
    { header[$0] = 1 }
    END {
      for (f = 1; f < ARGC; ++f) {
        split("", seen)
        found = ""
        reach(files[f])
        print files[f] found
      }
    }
    BEGIN { for (f = 1; f < ARGC; ++f) { files[f] = ARGV[f]; ARGV[f] = "" } }
  ' "$@"
}

# stamp_of <way of being compiled> <file> <header>...
stamp_of() {
  local compiled=$1
  shift
  { echo "$compiled" && sha256sum .clang-tidy "$@"; } | sha256sum | cut -c 1-64
}

# One file; its output only if there is something to say.
check_one() {
  local file=$1 stamp=$2 output
  if output=$(clang-tidy-16 --quiet -p build/lint "$file" 2>&1); then
    : >"$stamp"
  else
    grep -v ' warnings generated' <<<"$output"
    return 1
  fi
}

if [[ ${1:-} == --one ]]; then
  check_one "$2" "$3"
  exit
fi

# The compiler's precompiled headers are of no use to another one, and without them a missing include
# shows.
mkdir -p $kStamps
sed -e 's/ -Winvalid-pch//' -e 's/ -include [^ ]*cmake_pch\.hxx//' build/dev/compile_commands.json \
  >$kDatabase
grep -qF -- "-c $PWD/src/" $kDatabase || { echo "tidy: the build compiles nothing of src/" >&2; exit 1; }

headers_reached "$@" | while read -r file headers; do
  compiled=$(grep -F -- "-c $PWD/$file\"" $kDatabase) || continue
  # shellcheck disable=SC2086  # a list of paths without spaces
  stamp=$kStamps/${file//\//_}-$(stamp_of "$compiled" "$file" $headers)
  if [[ -f $stamp ]]; then
    touch "$stamp"
  else
    echo "$file $stamp"
  fi
done | xargs -r -L 1 -P "$(nproc)" scripts/tidy.sh --one

# Stamps of files as they were long ago.
find $kStamps -name '*.cpp-*' -mtime +30 -delete
