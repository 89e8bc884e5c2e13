#!/usr/bin/env bash
# The packages of one build: packaging/check.sh PRESET [--accept]
#
# Exported symbols and the types behind them are those of the last release, and lintian has no error. --accept first keeps
# symbols and types as those of a release.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

preset=$1
accept=${2:-}
build=build/$preset
shopt -s nullglob
debs=("$build"/*.deb)
library=$(printf '%s\n' "${debs[@]##*/}" | sed -n '/^lib/{/-dev_/!s/_.*//p}')
symbols=packaging/$library.symbols
dump=packaging/abi/$library.abi.xz

step() { printf -- '-- %s\n' "$*"; }

# Everything that is in the packages.
unpack() {
  rm -rf "$build/tree"
  local deb
  for deb in "${debs[@]}"; do dpkg-deb --extract "$deb" "$build/tree"; done
}

check_symbols() {
  step "symbols of $library"
  local work=$build/gensymbols
  rm -rf "$work"
  mkdir -p "$work/debian"
  printf 'Source: trelcolor\n\nPackage: %s\nArchitecture: any\n' "$library" >"$work/debian/control"
  local version
  version=$(sed -n '1s/.*(\(.*\)).*/\1/p' packaging/changelog)
  local compare=(dpkg-gensymbols "-p$library" -P../tree "-I../../../$symbols")
  if [ "$accept" = --accept ]; then
    # A symbol keeps the version that it came with; the pattern for the compiler's own templates stays one.
    (cd "$work" && "${compare[@]}" "-v$version" -q -t -c0 -Onew)
    cp "$work/new" "$symbols"
  fi
  # A symbol that came with this very version could go again, but for a later one.
  (cd "$work" && "${compare[@]}" "-v$version+" -c4 -O/dev/null)
}

# The unstripped library with what its public headers say.
dump_abi() { # OUT
  abidw --headers-dir "$build"/tree/usr/include/TrelColor* --drop-private-types --drop-undefined-syms --exported-interfaces-only \
    --no-corpus-path --no-comp-dir-path --no-show-locs --out-file "$1" "$(readlink -f "$build"/src/libTrelColor*.so)"
}

check_abi() {
  step "types of $library"
  dump_abi "$build/new.abi"
  if [ "$accept" = --accept ]; then
    mkdir -p packaging/abi
    xz --keep --force --stdout "$build/new.abi" >"$dump"
  fi
  xz --decompress --stdout "$dump" >"$build/old.abi"
  abidiff --suppressions packaging/abi/ignored.ini "$build/old.abi" "$build/new.abi"
}

check_policy() {
  step "lintian of $preset"
  lintian --allow-root --fail-on error "${debs[@]}"
}

unpack
check_symbols
check_abi
check_policy
