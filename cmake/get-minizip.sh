#!/bin/sh
# get-minizip.sh FOLDER: gets the sources of Debian's minizip package, with its patches, from the
# package archive configured on this system. There is no package for cross builds.
set -eu
[ -f "$1/zip.c" ] && exit 0
work=$1.work
rm -rf "$work"
mkdir -p "$work/lists/partial" "$work/parts" "$work/cache"
eval "$(apt-config shell PARTS Dir::Etc::sourceparts/d LIST Dir::Etc::sourcelist/f)"
list=s.sources
if [ -f "$PARTS/debian.sources" ]; then
  sed 's/^Types:.*/Types: deb-src/' "$PARTS/debian.sources" >"$work/$list"
else
  list=s.list
  sed -n 's/^deb /deb-src /p' "$LIST" >"$work/$list"
fi
apt_with_sources() {
  apt-get -qq -o Dir::Etc::sourcelist="$work/$list" -o Dir::Etc::sourceparts="$work/parts" \
    -o Dir::State::lists="$work/lists" -o Dir::Cache="$work/cache" -o APT::Sandbox::User=root "$@"
}
apt_with_sources update
(cd "$work" && apt_with_sources source --download-only minizip &&
  dpkg-source --no-check -x minizip_*.dsc out >/dev/null)
mkdir -p "$1"
cp "$work"/out/*.[ch] "$1"
rm -rf "$work"
