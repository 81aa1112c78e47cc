#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# tidy.sh <file.cpp>...: clang-tidy over these files. Most of its time goes into the headers of Qt and
# of the standard library, so the files of a folder that are compiled alike are analysed as one that
# includes them; where that finds anything, or names clash, the half of them, down to single files. A
# file that passed leaves a stamp in build/lint/ and is skipped as long as it, every header of the
# project that it reaches, its way of being compiled and the checks stay the same. A file that is not
# built here (another platform's) is left out.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/sources.sh
readonly kStamps=build/lint kDatabase=build/lint/compile_commands.json kGroups=build/lint/groups

# Prints "file header..." per argument: the headers of src/ and lab/ that it includes, directly or not.
headers_reached() {
  source_files | grep '\.h$' | awk '
    function read_includes(path,    line, name) {
      if (path in includes) return
      includes[path] = ""
      while ((getline line < path) > 0) {
        if (line !~ /^[ \t]*#[ \t]*include[ \t]*"/) continue
        split(line, part, "\"")
        name = ("src/" part[2]) in header ? "src/" part[2] : "lab/" part[2]
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

# The arguments of a compiler's command, without the compiler and the names of files.
arguments_of() {
  sed -e 's/^ *"command": "//' -e 's/",\{0,1\}$//' -e 's/\\\(.\)/\1/g' \
    -e 's/^[^-]* -/-/' -e 's/ -o [^ ]*//' -e 's/ -c [^ ]*//' <<<"$1"
}

# check <arguments> <file stamp>...: what there is to say is said of single files only.
check() {
  local arguments=$1 file stamp output half unit
  local -a words
  shift
  eval "words=($arguments)"
  if [[ $# -eq 1 ]]; then
    read -r unit stamp <<<"$1"
  else
    unit=$kGroups/$BASHPID.cpp
    for file in "$@"; do
      echo "#include \"$PWD/${file% *}\"  // NOLINT(bugprone-suspicious-include)"
    done >"$unit"
  fi
  if output=$(clang-tidy-16 --quiet --header-filter='/(src|lab)/.*\.(h|cpp)$' "$unit" -- \
    "${words[@]}" 2>&1); then
    for file in "$@"; do : >"${file#* }"; done
    return
  fi
  if [[ $# -eq 1 ]]; then
    grep -v ' warnings generated' <<<"$output"
    return 1
  fi
  local failed=0
  half=$(($# / 2))
  check "$arguments" "${@:1:half}" || failed=1
  check "$arguments" "${@:half+1}" || failed=1
  return $failed
}

if [[ ${1:-} == --group ]]; then
  mapfile -t lines <"$2"
  check "${lines[@]}"
  exit
fi

# The compiler's precompiled headers are of no use to another one.
rm -rf $kGroups
mkdir -p $kGroups
sed -e 's/ -Winvalid-pch//' -e 's/ -include [^ ]*cmake_pch\.hxx//' build/dev/compile_commands.json \
  >$kDatabase
grep -qF -- "-c $PWD/src/" $kDatabase || { echo "tidy: the build compiles nothing of src/" >&2; exit 1; }

# A group is a file: the arguments, then "file stamp" lines.
headers_reached "$@" | while read -r file headers; do
  # One that is part of several targets is looked at as part of the first.
  compiled=$(grep -m 1 -F -- "-c $PWD/$file\"" $kDatabase) || continue
  # shellcheck disable=SC2086  # a list of paths without spaces
  stamp=$kStamps/${file//\//_}-$(stamp_of "$compiled" "$file" $headers)
  if [[ -f $stamp ]]; then
    touch "$stamp"
    continue
  fi
  arguments=$(arguments_of "$compiled")
  group=$kGroups/$(sha256sum <<<"${file%/*} $arguments" | cut -c 1-16)
  [[ -f $group ]] || echo "$arguments" >"$group"
  echo "$file $stamp" >>"$group"
done

# The largest first, so that all processors end together.
find $kGroups -type f -size +0 | xargs -r wc -l | sort -rn | awk '$2 != "total" { print $2 }' |
  xargs -r -n 1 -P "$(nproc)" scripts/tidy.sh --group

# Stamps of files as they were long ago.
find $kStamps -maxdepth 1 -name '*.cpp-*' -mtime +30 -delete
