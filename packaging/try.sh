#!/usr/bin/env bash
# Tries the package on a bare Debian 12, in a folder: installs it with nothing but what it depends on, looks at all that it
# brings, lets an ordinary user open a show there on a virtual display, and removes it again. Needs root and debootstrap,
# and what tools/packages.txt lists.
#
#   packaging/try.sh [PACKAGE.deb]     without one it is made first
#
# MIRROR is where the packages come from; without it, where this machine has its own from. The bare system and all that was
# fetched stay in build/bookworm for the next run, and so do the pictures of the desk.
set -euo pipefail
cd "$(dirname "$0")/.."

say() { printf '\n== %s\n' "$*"; }
fail() { echo "try: $*" >&2; exit 1; }

[ "$(id -u)" -eq 0 ] || fail "needs root"
if [ -z "${TRYING:-}" ]; then # all that is mounted goes with this process
  TRYING=yes exec unshare --mount --propagation private "packaging/$(basename "$0")" "$@"
fi

package=$(realpath "${1:-$(./package | tail -n 1)}")
cache=$PWD/build/bookworm
tree=$cache/tree
mkdir -p "$cache/archives/partial"

inside() { chroot "$tree" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"; }
as() { inside su - "$1" -c "$2"; }
apt() { inside apt-get -qq -y --no-install-recommends "$@" >>"$cache/apt.log" 2>&1 || { tail "$cache/apt.log"; fail "apt-get $1"; }; }

bare_system() {
  local mirror=${MIRROR:-}
  [ -n "$mirror" ] || mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' \
    'Codename: bookworm' 'Component: main' | head -n 1)
  [ -n "$mirror" ] || fail "say by MIRROR= where Debian 12 comes from"
  rm -rf --one-file-system "$cache/bare.new"
  debootstrap --variant=minbase bookworm "$cache/bare.new" "$mirror" >"$cache/debootstrap.log"
  mv "$cache/bare.new" "$cache/bare"
}

fresh_tree() {
  rm -rf --one-file-system "$tree"
  cp -a "$cache/bare" "$tree"
  mount -t proc proc "$tree/proc"
  mount -t sysfs -o ro sysfs "$tree/sys"
  mount --bind /dev "$tree/dev"
  mount --bind /dev/pts "$tree/dev/pts"
  mount --bind "$cache/archives" "$tree/var/cache/apt/archives"
  printf '#!/bin/sh\nexit 101\n' >"$tree/usr/sbin/policy-rc.d" # nothing is started in a folder
  chmod 755 "$tree/usr/sbin/policy-rc.d"
  cp "$package" "$tree/root/velgrove.deb"
  : >"$cache/apt.log"
  apt update
  inside useradd --create-home --shell /bin/sh --groups dialout technician
  inside useradd --create-home --shell /bin/sh --groups plugdev guest
  inside useradd --create-home --shell /bin/sh stranger
}

look_at_programs() {
  local shows=/usr/share/velgrove/shows
  as technician "velgrove-show print $shows/demo.kel" | sed -n 1,3p
  as technician "velgrove-show check $shows/demo.kel" >/dev/null || fail "the demo has findings"
  as technician "echo '1000 go' | velgrove-show rehearse --changes $shows/demo.kel -" | tail -n 1 | cut -c -60
  as technician "velgrove-box --help" >/dev/null
}

# A container may give nobody more than it has itself.
may_raise_limits() { prlimit --rtprio=10 true 2>/dev/null; }
real_time_of() { if may_raise_limits && [ "$1" != stranger ]; then echo 10; else echo 0; fi; }

# What the rules give is asked of a file that stands for the interface.
look_at_rights() {
  local command device=$tree/srv/interface
  for user in technician guest stranger; do
    [ "$(as $user 'ulimit -r')" = "$(real_time_of $user)" ] || fail "$user has not the right real-time priority"
  done
  command=$(sed -n 's/.*RUN+="\([^"]*\)".*/\1/p' "$tree/usr/lib/udev/rules.d/60-velgrove.rules")
  install -m 660 -g dialout /dev/null "$device"
  inside sh -c "${command/\$devnode//srv/interface}"
  as technician 'exec 3<>/srv/interface' || fail "dialout may not open the interface"
  as guest 'exec 3<>/srv/interface' || fail "plugdev may not open the interface"
  if as stranger 'exec 3<>/srv/interface' 2>/dev/null; then fail "everyone may open the interface"; fi
  rm "$device"
  echo "dialout and plugdev open the interface, others don't"
  if may_raise_limits; then
    echo "and they get the real-time priority 10"
  else
    echo "NOT TRIED: this machine may not give real-time priorities"
  fi
}

look_at_rules() {
  local said rules=/usr/lib/udev/rules.d/60-velgrove.rules
  if inside udevadm verify --help >/dev/null 2>&1; then
    inside udevadm verify "$rules"
  else # any device: all rules are read first
    said=$(inside udevadm test /sys/class/tty/tty0 2>&1 | grep -F 60-velgrove.rules)
    [ "$said" = "Reading rules file: $rules" ] || fail "the rules aren't understood: $said"
    echo "$said"
  fi
}

# By the library that file managers ask.
look_at_desktop() {
  inside desktop-file-validate /usr/share/applications/velgrove.desktop
  as technician 'cp /usr/share/velgrove/shows/demo.kel x.kel
                 gio info --attributes standard::content-type,standard::icon x.kel
                 gio mime application/x-velgrove-show' | tee "$cache/types"
  grep -q 'content-type: application/x-velgrove-show$' "$cache/types" || fail "nobody knows what a .kel is"
  grep -q 'velgrove[.]desktop$' "$cache/types" || fail "the double click goes nowhere"
}

remove() {
  apt purge velgrove
  inside dpkg-query -W velgrove 2>/dev/null && fail "dpkg still knows it"
  local left
  left=$(find "$tree" -xdev -iname '*velgrove*' -not -path "$tree/home/*" -not -path "$tree/tmp/*" -not -path "$tree/root/*")
  left+=$(grep -rlsi velgrove "$tree/etc" "$tree/usr/share/applications" "$tree/usr/share/mime" "$tree/var/lib/dpkg/info" || true)
  [ -z "$left" ] || fail "left behind: $left"
  echo "nothing is left but the user's own:"
  find "$tree/home/technician" -type f -not -name '.[bp]*rc' -not -name .bash_logout -not -name .profile | sed "s#^$tree##"
  [ -f "$tree/home/technician/.local/share/velgrove/demo.kel" ] || fail "the user's shows are gone"
}

[ -d "$cache/bare" ] || { say "A bare Debian 12"; bare_system; }
say "Install $(basename "$package") and what it depends on"
fresh_tree
apt install /root/velgrove.deb
inside dpkg-query -W -f='${Package} ${Version} ${Status}, ${Installed-Size} kB\n' velgrove
say "The programs"
look_at_programs
say "The rights"
look_at_rights
say "The desk, before an ordinary user"
REAL_TIME=$(real_time_of technician) packaging/try_desk.py "$tree" "$cache"
say "What a desktop knows of it"
apt install desktop-file-utils hicolor-icon-theme libglib2.0-bin shared-mime-info udev xdg-utils
look_at_desktop
look_at_rules
say "Install once more, and remove"
apt install --reinstall /root/velgrove.deb
remove
say "The package installs, runs and goes"
