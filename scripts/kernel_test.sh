#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# kernel_test.sh <folder of programs> [program [argument...]]: boots Debian's current kernel in an
# emulated machine, plugs simulated boards into it, and runs the conformance test of libkvusb-hid
# there, or the program given. Exits with its status. The machine needs no rights, no KVM and no disk:
# programs and modules are an initial RAM file system. ./dev kernel-test builds what it needs.
set -euo pipefail
bin=$(cd "$1" && pwd)
shift
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh

kLimit=240 # seconds, for all that happens in the machine; a run of the conformance test takes 60
kModules=(hid-generic usbhid vhci-hcd)

folder=build/kernel
root=$folder/root
mkdir -p "$folder"

die() {
  echo "kernel-test: $*" >&2
  exit 1
}

# What the machine is made of is not installed on this one: it is unpacked into $folder/<package> and
# kept for the next time. Of the kernel that is the image, and the drivers that could be wanted.
fetch() {
  local package=$1
  shift
  [[ -d $folder/$package ]] && return
  echo "Fetching $package"
  rm -rf "$folder/new"
  mkdir -p "$folder/new"
  (cd "$folder/new" && apt-get --quiet download "$package" 2>&1 | grep -v '^W: Download is performed') ||
    die "$package could not be fetched"
  dpkg-deb --fsys-tarfile "$folder"/new/*.deb | tar -x -C "$folder/new" --wildcards "$@"
  rm "$folder"/new/*.deb
  mv "$folder/new" "$folder/$package"
}

kernel_package() {
  apt-cache depends linux-image-amd64 2>/dev/null | sed -n 's/^ *Depends: \(linux-image-.*\)/\1/p'
}

fetch_all() {
  is_debian || die "it takes kernel, udev and busybox from Debian's packages, so it needs Debian"
  [[ $(dpkg --print-architecture) == amd64 ]] || die "it only knows the kernel for amd64"
  [[ -n $(kernel_package) ]] || apt_get update
  kernel=$(kernel_package)
  [[ -n $kernel ]] || die "apt knows no linux-image-amd64"
  # Yesterday's kernel.
  find "$folder" -maxdepth 1 -name 'linux-image-*' ! -name "$kernel" -exec rm -rf {} +
  fetch "$kernel" './boot/vmlinuz*' './lib/modules/*/modules.*' \
    './lib/modules/*/kernel/drivers/hid*' './lib/modules/*/kernel/drivers/usb*'
  fetch udev './bin/udevadm'
  fetch busybox-static './bin/busybox'
}

# add <file> <path in the machine>: with the libraries that it is linked to.
add() {
  local library
  mkdir -p "$root/$(dirname "$2")"
  cp -L "$1" "$root/$2"
  { ldd "$1" 2>/dev/null || true; } | sed -nE 's|^[^/]*(/[^ ]+).*|\1|p' | while read -r library; do
    mkdir -p "$root/$(dirname "$library")"
    cp -Lu "$library" "$root/$library"
  done
}

add_modules() {
  local version path
  version=$(ls "$folder/$kernel/lib/modules")
  /sbin/depmod -b "$folder/$kernel" "$version"
  mkdir -p "$root/modules"
  for module in "${kModules[@]}"; do
    /sbin/modprobe -d "$folder/$kernel" -S "$version" --show-depends "$module"
  done | awk '$1 == "insmod" && !seen[$2]++ { print $2 }' | while read -r path; do
    cp "$path" "$root/modules/"
    basename "$path"
  done >"$root/modules/order"
}

# add_check <program> [argument...]: what /init runs. Arguments that are files come along.
add_check() {
  local words=(/check.d/program) given number=0
  echo "${1##*/}" >"$root/check.title"
  add "$1" check.d/program
  shift
  for given in "$@"; do
    if [[ -f $given ]]; then
      mkdir -p "$root/check.d/$((++number))"
      add "$given" "check.d/$number/${given##*/}"
      given=/check.d/$number/${given##*/}
    fi
    words+=("$(printf %q "$given")")
  done
  printf '#!/bin/sh\nexec %s\n' "${words[*]}" >"$root/check"
  chmod +x "$root/check"
}

make_root() {
  rm -rf "$root"
  mkdir -p "$root"/{bin,dev,proc,sys,run,tmp,etc,lib/systemd}
  add "$folder/busybox-static/bin/busybox" bin/busybox
  add "$folder/udev/bin/udevadm" bin/udevadm
  ln -s /bin/udevadm "$root/lib/systemd/systemd-udevd"
  add "$bin/quillon-virtual-board" bin/quillon-virtual-board
  cp scripts/kernel/init scripts/kernel/*.json "$root/"
  add_modules
  add_check "$@"
  (cd "$root" && find . | cpio --quiet -o -H newc) >"$folder/initramfs"
}

boot() {
  timeout --kill-after=5 "$kLimit" qemu-system-x86_64 -accel tcg -M q35 -m 256 -smp 1 \
    -nodefaults -no-user-config -display none -serial stdio -no-reboot \
    -kernel "$folder/$kernel"/boot/vmlinuz-* -initrd "$folder/initramfs" \
    -append 'console=ttyS0 loglevel=3 panic=-1 rdinit=/init' </dev/null
}

# The rig has a board that leaves the bus at this command.
[[ $# -gt 0 ]] ||
  set -- "$bin/kvusb-conformance" --restart --vanish 1010:22 "$bin/libkvusb-hid.so"
fetch_all
make_root "$@"
start=$SECONDS
boot | tr -d '\r' | tee "$folder/log" || die "the machine did not end within $kLimit s"
status=$(sed -n 's/^kernel-test: status //p' "$folder/log")
echo "The machine ran for $((SECONDS - start)) s; its log is $folder/log"
exit "${status:-1}"
