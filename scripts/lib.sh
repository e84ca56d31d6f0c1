# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# Functions that the scripts beside this file share. To be sourced by bash, from the top of the tree.

say() { printf '\n== %s\n' "$*"; }

die() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

# packages GROUP...: the packages of these groups, one a line.
packages() {
  local group
  for group in "$@"; do
    awk -v group="$group" '$1 == group { print $2 }' scripts/packages
  done
}

# install_missing GROUP...: installs those packages of the groups that this machine lacks; asks for nothing else.
install_missing() {
  local package missing=() as_root=()
  if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
    printf 'No apt-get here. Needed, under the names that Debian gives them: %s\n' "$(packages "$@" | xargs)"
    return
  fi
  for package in $(packages "$@"); do
    if [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
      missing+=("$package")
    fi
  done
  if [ ${#missing[@]} -eq 0 ]; then
    return
  fi
  say "Installing ${missing[*]}"
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || die "not root and no sudo here; install by hand: ${missing[*]}"
    as_root=(sudo)
  fi
  as_root+=(env DEBIAN_FRONTEND=noninteractive)
  "${as_root[@]}" apt-get update -qq </dev/null || die "apt-get update failed"
  "${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" </dev/null ||
    die "apt-get could not install: ${missing[*]}"
}

# fixed_addresses: the words to put before a command so that it runs without address space randomisation, where that
# can be had. The sanitizers of GCC 12 fail at random on kernels that randomise more bits than they expect.
fixed_addresses() {
  if setarch "$(uname -m)" -R true 2>/dev/null; then
    printf 'setarch %s -R' "$(uname -m)"
  fi
}
