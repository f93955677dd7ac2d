#!/bin/sh
# get-source.sh DEST PACKAGE: gets the sources of a Debian package, with its patches, from the package
# archive configured on this system; for libraries without a package for Windows.
set -eu
[ -e "$1/.complete" ] && exit 0
w=$1.work
rm -rf "$w" "$1"
mkdir -p "$w/lists/partial" "$w/parts" "$w/cache" "$(dirname "$1")"
eval "$(apt-config shell D Dir::Etc::sourceparts/d L Dir::Etc::sourcelist/f)"
s=s.sources
sed 's/^Types:.*/Types: deb-src/' "$D"/debian.sources >"$w/$s" 2>/dev/null ||
  { s=s.list; sed -n 's/^deb /deb-src /p' "$L" >"$w/$s"; }
a() {
  apt-get -qq -o Dir::Etc::sourcelist="$w/$s" -o Dir::Etc::sourceparts="$w/parts" \
    -o Dir::State::lists="$w/lists" -o Dir::Cache="$w/cache" -o APT::Sandbox::User=root "$@"
}
a update
(cd "$w" && a source --download-only "$2" >/dev/null &&
  dpkg-source --no-check -x "$2"_*.dsc out >/dev/null)
mv "$w/out" "$1"
touch "$1/.complete"
rm -rf "$w"
