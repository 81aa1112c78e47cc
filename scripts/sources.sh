# SPDX-License-Identifier: MIT
#
# Sourced by the scripts that look at sources, with the project's root as the current folder.

# Every C and C++ file of the project, one per line.
source_files() {
  local folder
  for folder in src lab tests; do
    [[ -d $folder ]] || continue
    find "$folder" -type f \( -name '*.cpp' -o -name '*.h' -o -name '*.c' \)
  done | LC_ALL=C sort
}
