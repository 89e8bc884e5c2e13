#!/usr/bin/env bash
# All packages install side by side with apt on a clean Debian, where the commands run, and go again without a trace:
# packaging/try-install.sh FOLDER DEB...
set -euo pipefail

root=$1
shift
if [ "$(id -u)" -ne 0 ]; then
  echo "-- install on a clean Debian: skipped, it needs root"
  exit 0
fi
echo "-- install on a clean Debian"

# Without words, but for those of a failure.
quietly() { "$@" >"$root.log" 2>&1 || { tail -n 20 "$root.log" >&2; return 1; }; }

in_root() { chroot "$root" env DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 "$@"; }

expect() { # TEXT COMMAND...
  local text=$1 out
  shift
  out=$(in_root "$@")
  case $out in *"$text"*) return ;; esac
  printf '%s: no "%s" in:\n%s\n' "$*" "$text" "$out" >&2
  return 1
}

rm -rf "$root"
# The release that the packages were built on, which their dependencies are of.
quietly debootstrap --variant=minbase "$(. /etc/os-release && echo "$VERSION_CODENAME")" "$root"
echo force-unsafe-io >"$root/etc/dpkg/dpkg.cfg.d/throw-away"
cp "$@" "$root/"
files=() names=()
for deb; do
  files+=("./${deb##*/}")
  names+=("$(dpkg-deb --field "$deb" Package)")
done
quietly in_root apt-get update -qq
quietly in_root apt-get install -y --no-install-recommends "${files[@]}"
for command in trelcolor trelcolor-qt6; do
  expect ff0000 $command convert --format hex red
  expect "Web Colors" $command library list
done
quietly in_root apt-get purge -y "${names[@]}"
if find "$root/usr" -iname '*trelcolor*' | grep .; then
  echo "the packages leave these behind" >&2
  exit 1
fi
rm -rf "$root" "$root.log"
