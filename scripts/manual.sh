#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Makes build/manual/quillon.pdf and the man pages below build/manual/man, with the tables and
# pictures that the chapters ask for. `./dev manual` runs it; the argument is the folder of the
# programs. Any warning fails.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
bin=$1
out=build/manual
version=$(sed -n 's/^project(Quillon VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
manpages=(docs/manual/man/*.[1-9].adoc)

die() {
  echo "manual: $*" >&2
  exit 1
}

# The names of the files that the chapters show.
pictures() {
  sed -n '/^\/\//d; s/.*image::\{0,1\}{pictures}\/\([^[]*\)\[.*/\1/p' docs/manual/*.adoc |
    LC_ALL=C sort -u
}

# What is left from the last time could stand in for what is no longer made.
make_parts() {
  local wanted
  mapfile -t wanted < <(pictures)
  rm -rf "$out"
  mkdir -p "$out/man" "$out/pictures"
  "$bin/quillon-settings-list" --asciidoc "$out/tables"
  [[ ${#wanted[@]} -eq 0 ]] || QT_QPA_PLATFORM=offscreen "$bin/quillon-screenshots" \
    "$out/pictures" "${wanted[@]}" --palette light --scale 2 2>"$out/screenshots.log" ||
    die "$(tail -n 1 "$out/screenshots.log")"
}

# The options in a text, one a line: --state, -o.
options() {
  grep -oE -- '(^|[^-[:alnum:]])--?[a-z][-a-z]*' | grep -oE -- '--?[a-z][-a-z]*' |
    LC_ALL=C sort -u
}

# All that a program says about itself, its subcommands too.
help_of() {
  local command
  "$bin/$1" --help
  for command in $("$bin/$1" --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]\{1,\}\) .*/\1/p'); do
    "$bin/$1" "$command" --help
  done
}

# A man page says what the program takes, neither less nor more. Quillon itself has no --help.
check_options() {
  local page name
  for page in "${manpages[@]}"; do
    name=$(basename "$page" .1.adoc)
    [[ $name != quillon ]] || continue
    # A man page has its options in the synopsis and at the head of descriptions, all in *bold*.
    diff --label "$name --help" --label "$page" -u <(help_of "$name" | options) \
      <(grep -oE '\*-[^*]*\*' "$page" | tr -d '*' | options) ||
      die "$page and $name --help do not name the same options"
  done
}

# Nobody finds a variable that no page names.
check_variables() {
  local name
  for name in $(grep -rhoE --include='*.cpp' --include='*.h' '"QUILLON_[A-Z_]+"' src lab |
    tr -d '"' | LC_ALL=C sort -u); do
    grep -q "^\`$name\`::" docs/manual/man/variables.adoc ||
      die "docs/manual/man/variables.adoc does not name $name"
  done
}

make_parts
check_options
check_variables
# Links to nowhere are told here only; when it makes a PDF, --verbose also warns of every line end.
asciidoctor --verbose --failure-level=INFO -o - docs/manual/manual.adoc >/dev/null
asciidoctor-pdf --failure-level=WARN -a reproducible -a revnumber="$version" \
  -a pdf-theme=docs/manual/theme.yml -a pdf-fontsdir=/usr/share/fonts/truetype/dejavu \
  -o "$out/quillon.pdf" docs/manual/manual.adoc
asciidoctor --failure-level=WARN -b manpage -a reproducible -a version="$version" -D "$out/man" \
  "${manpages[@]}"
echo "The manual: $PWD/$out/quillon.pdf, man pages: $PWD/$out/man"
