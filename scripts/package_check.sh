#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Looks at the packages in build/package: lets Debian's checkers examine them, installs them into a
# bare Debian, starts the programs there, and removes them again without a trace. Needs root, for a
# root folder of its own. `./dev package-check` runs it.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh

folder=$PWD/build/package
tree=$folder/tree # what the packages hold
root=$folder/root # the bare Debian, of this run
version=$(dpkg-parsechangelog --file packaging/debian/changelog --show-field Version)
suite=$(. /etc/os-release && echo "${VERSION_CODENAME:-}")
packages=()
for name in quillon quillon-dev; do
  packages+=("$folder/${name}_${version}_$(dpkg --print-architecture).deb")
done

die() {
  echo "package-check: $*" >&2
  exit 1
}

step() {
  echo "== $*"
}

# Any word of a checker counts.
silent() {
  local said
  said=$("$@" 2>&1) || die "$1 fails: $said"
  [[ -z $said ]] || die "$1 says: $said"
}

unpack() {
  rm -rf "$tree"
  local package
  for package in "${packages[@]}"; do
    [[ -f $package ]] || die "$package is missing"
    dpkg-deb --extract "$package" "$tree"
  done
}

check_statically() {
  step 'Checkers'
  silent lintian --display-experimental --display-info --pedantic --allow-root "${packages[@]}"
  silent desktop-file-validate "$tree"/usr/share/applications/*.desktop
  appstreamcli validate --no-net --no-color "$tree"/usr/share/metainfo/*.xml
  # On the user's machine there is no such folder, or somebody else's.
  ! grep -rlF --binary-files=text "$PWD" "$tree" || die 'these files tell where they were built'
}

prepare_root() {
  step "A bare Debian, $suite"
  if [[ ! -d $folder/$suite ]]; then
    rm -rf "$folder/new"
    debootstrap --variant=minbase "$suite" "$folder/new" >"$folder/debootstrap.log" ||
      die "debootstrap fails: $(tail -n 3 "$folder/debootstrap.log")"
    mv "$folder/new" "$folder/$suite"
  fi
  rm -rf "$root"
  cp -a --reflink=auto "$folder/$suite" "$root"
  # A stand-in tells what udev would be asked for.
  mkdir -p "$root/run/udev"
  printf '#!/bin/sh\necho "$@" >>/tmp/udevadm\n' >"$root/usr/bin/udevadm"
  chmod 755 "$root/usr/bin/udevadm"
  cp "${packages[@]}" "$root/tmp"
}

# inside <command>...: as root, with nothing of this machine but its network.
inside() {
  unshare --mount --pid --fork --kill-child --root="$root" --mount-proc \
    env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
    ${http_proxy:+"http_proxy=$http_proxy"} "$@"
}

# as_user <command>...: without rights or a screen.
as_user() {
  unshare --mount --pid --fork --kill-child --root="$root" --mount-proc \
    --setgid 65534 --setuid 65534 \
    env -i PATH=/usr/bin:/bin LC_ALL=C.UTF-8 HOME=/tmp/user XDG_RUNTIME_DIR=/tmp/user \
    QT_QPA_PLATFORM=offscreen "$@"
}

apt_inside() {
  inside apt-get --quiet --yes -o Dpkg::Use-Pty=0 "$@" >>"$folder/apt.log" 2>&1 ||
    die "apt-get $1 fails: $(tail -n 5 "$folder/apt.log")"
}

# Every file with its kind, rights and owner, and what /etc says; without apt's own notes.
files() {
  (
    cd "$root"
    find . -xdev \( -path ./tmp -o -path ./var/cache -o -path ./var/log -o -path ./var/lib/apt \) \
      -prune -o -printf '%p %y %m %U:%G %l\n'
    find etc -type f ! -name ld.so.cache -exec sha256sum {} +
  ) | LC_ALL=C sort
}

install_packages_inside() {
  step 'Installing'
  : >"$folder/apt.log"
  apt_inside update
  files >"$folder/before.txt"
  apt_inside install --no-install-recommends "${packages[@]/#*\//\/tmp/}"
  apt_inside install --reinstall "${packages[@]/#*\//\/tmp/}"
  inside dpkg --verify quillon quillon-dev
  inside dpkg --audit
}

# starts <program> <pattern>: whether it stays up, and a line of its trace shows that its library told
# of boards. Without a library it would wait in a message box before it asks.
starts() {
  local status=0
  rm -f "$root/tmp/user/trace"
  as_user QUILLON_TRACE=/tmp/user/trace timeout 5 "$1" || status=$?
  [[ $status -eq 124 ]] || die "$1 ends by itself, with $status"
  grep -q "$2" "$root/tmp/user/trace" || die "$1 traces no '$2': $(cat "$root/tmp/user/trace")"
}

use_programs() {
  step 'Using'
  install -d -m 700 -o 65534 -g 65534 "$root/tmp/user"
  starts quillon 'detect [123] -> 0'
  starts quillon-demo 'detect [123] -> 1 boards [1-9]'
  as_user kvusb-conformance sim | tail -n 1
  [[ ! -e $root/usr/lib/quillon/kvusb-host ]] ||
    as_user QUILLON_KVUSB_HOST=1 kvusb-conformance sim | tail -n 1
  as_user sh -ec 'for file in /usr/share/quillon/firmware/*.kvx; do kvx check "$file"; done' >/dev/null
  as_user quillon-virtual-board --help >/dev/null
  # As the program asks for it.
  [[ $(head -c 5 "$root/usr/bin/../share/doc/quillon/quillon.pdf") == %PDF- ]] ||
    die 'the manual is not where the program looks'
  local page
  for page in quillon quillon-demo kvx kvusb-conformance quillon-virtual-board; do
    inside zgrep -Eq '^\.(SH "DESCRIPTION"|so man1/quillon\.1)$' "/usr/share/man/man1/$page.1.gz" ||
      die "no man page for $page"
  done
}

use_header() {
  echo '#include <quillon/kvusb.h>' |
    gcc -std=c11 -Wall -Wextra -Wpedantic -Werror -I "$tree/usr/include" -xc -c - -o /dev/null
}

purge_packages() {
  step 'Purging'
  apt_inside purge quillon quillon-dev
  apt_inside autoremove --purge
  files >"$folder/after.txt"
  diff -u "$folder/before.txt" "$folder/after.txt" || die 'this is left behind'
  diff -u --label wanted - "$root/tmp/udevadm" <<'UDEV' || die 'udev was asked for something else'
control --reload
trigger --action=change --subsystem-match=hidraw
control --reload
trigger --action=change --subsystem-match=hidraw
control --reload
UDEV
}

[[ $EUID -eq 0 ]] || die 'it needs root, for a root folder of its own'
is_debian || die 'it needs Debian'
unpack
check_statically
use_header
prepare_root
install_packages_inside
use_programs
purge_packages
rm -rf "$root" "$tree"
echo 'The packages are in order.'
