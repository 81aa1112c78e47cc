# SPDX-License-Identifier: MIT
#
# Sourced by the tests of the project's checks: a made-up tree to break, and claims about what a
# check says to it. The tree is the current folder and goes with the test.

tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
cd "$tree"
failures=0

# put <file> <line>...: a file of the tree, folders included.
put() {
  local file=$1
  shift
  mkdir -p "$(dirname "$file")"
  printf '%s\n' "$@" >"$file"
}

# passes <claim>: the check has nothing to say.
passes() {
  local said
  said=$("$check" "$tree" 2>&1) && [[ -z $said ]] && return
  echo "FAILED: $1; it said: $said"
  failures=$((failures + 1))
}

# complains <claim> <text>: the check fails, and a line of what it says holds the text.
complains() {
  local said
  if said=$("$check" "$tree" 2>&1) || [[ $said != *"$2"* ]]; then
    echo "FAILED: $1; expected \"$2\", it said: $said"
    failures=$((failures + 1))
  fi
}
