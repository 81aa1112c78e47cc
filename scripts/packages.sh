# SPDX-License-Identifier: MIT
#
# What the commands of ./dev need, and how it comes onto the machine. Sourced by ./dev.

# Debian 12's packages, by what needs them. Recommended packages are not installed, so a list names
# all that its programs need to run.
declare -rA kPackages=(
  [build]='g++ cmake ninja-build ccache libgtest-dev libgmock-dev nlohmann-json3-dev libcli11-dev libutfcpp-dev pkg-config libhidapi-dev libudev-dev'
  [test]='umockdev libumockdev-dev'
  [kernel]='qemu-system-x86 cpio kmod'
  [qt]='qt6-base-dev fonts-dejavu-core'
  [wayland]='qt6-wayland'
  [screen]='xvfb xauth'
  [lint]='clang-format-14 clang-tidy-16'
  [fuzz]='clang-14 libclang-rt-14-dev'
  [bench]='libbenchmark-dev libxcb1-dev'
  [icons]='librsvg2-bin icoutils'
  [manual]='asciidoctor ruby-asciidoctor-pdf fonts-dejavu-core'
  [mutate]='patch'
  [package]='dpkg-dev binutils file'
  [package-check]='debootstrap lintian appstream desktop-file-utils'
  [windows]='g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix cmake ninja-build ccache googletest nlohmann-json3-dev libcli11-dev libutfcpp-dev'
  [windows-qt]='qt6-base-dev fonts-dejavu-core perl patch xz-utils'
  [wine]='wine64'
)

# The programs that show the same on a distribution whose package names we do not know.
declare -rA kPrograms=(
  [build]='g++ cmake ninja ccache pkg-config'
  [test]='umockdev-wrapper'
  [kernel]='qemu-system-x86_64 cpio depmod'
  [qt]='qmake6'
  [wayland]=''
  [screen]='xvfb-run xauth'
  [lint]='clang-format-14 clang-tidy-16'
  [fuzz]='clang++-14'
  [bench]=''
  [icons]='rsvg-convert icotool'
  [manual]='asciidoctor asciidoctor-pdf'
  [mutate]='patch'
  [package]='dpkg-deb dpkg-shlibdeps strip file'
  [package-check]='debootstrap lintian appstreamcli desktop-file-validate'
  [windows]='x86_64-w64-mingw32-g++-posix i686-w64-mingw32-g++-posix cmake ninja ccache'
  [windows-qt]='moc perl patch xz'
  [wine]='wine64'
)

is_debian() {
  [[ -r /etc/os-release ]] || return 1
  local words
  words=" $(. /etc/os-release && echo "${ID:-} ${ID_LIKE:-}") "
  [[ $words == *' debian '* ]] && command -v apt-get dpkg-query >/dev/null
}

# ensure_packages <group>...: returns when the packages of these groups are there, else stops.
ensure_packages() {
  local group packages=() programs=()
  for group in "$@"; do
    read -ra packages <<<"${packages[*]-} ${kPackages[$group]}"
    read -ra programs <<<"${programs[*]-} ${kPrograms[$group]}"
  done
  if is_debian; then
    install_packages "${packages[@]}"
  else
    require_programs "${packages[*]}" "${programs[@]}"
  fi
}

install_packages() {
  local missing
  missing=$(printf '%s\n' "$@" | LC_ALL=C sort -u | LC_ALL=C comm -23 - <(installed_packages "$@"))
  [[ -n $missing ]] || return 0
  read -ra missing <<<"${missing//$'\n'/ }"
  echo "Installing ${missing[*]}"
  apt_get update
  apt_get install --yes --no-install-recommends "${missing[@]}" || {
    echo "dev: apt-get could not install: ${missing[*]}" >&2
    exit 1
  }
}

installed_packages() {
  dpkg-query --show --showformat '${db:Status-Status} ${Package}\n' "$@" 2>/dev/null |
    sed -n 's/^installed //p' | LC_ALL=C sort -u
}

apt_get() {
  local as_root=()
  if [[ $EUID -ne 0 ]]; then
    command -v sudo >/dev/null || {
      echo "dev: installing packages needs root or sudo; missing are: ${missing[*]}" >&2
      exit 1
    }
    as_root=(sudo)
  fi
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get --quiet \
    -o DPkg::Lock::Timeout=120 -o Dpkg::Use-Pty=0 "$@" </dev/null
}

require_programs() {
  local packages=$1 program missing=()
  shift
  for program in "$@"; do
    command -v "$program" >/dev/null || missing+=("$program")
  done
  [[ ${#missing[@]} -gt 0 ]] || return 0
  echo "dev: this is no Debian, so install what is missing yourself: ${missing[*]}" >&2
  echo "The packages that this command needs are, by their Debian 12 names:" >&2
  printf '  %s\n' $packages >&2
  exit 1
}
