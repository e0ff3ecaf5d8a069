#!/usr/bin/env bash
# The Debian package that script/package built, unpacked into a temporary root with dpkg -x as
# apt would install it: every file where the system looks for it, the dependencies a clean
# machine needs, the menu entry, the manual page, and the programs of the package run from
# there on a demonstration installation. Skipped (exit 77) until the package has been built.
#
# Usage: check_package.sh PACKAGE_DIR
set -euo pipefail

dir=$1
deb=$(ls -t "$dir"/pagamenti_*.deb 2>/dev/null | head -n 1 || true)
if [ -z "$deb" ]; then
    echo "No package in $dir: run script/package first."
    exit 77
fi
fail() {
    echo "FAIL: $*" >&2
    exit 1
}
work=$(mktemp -d /tmp/pgpXXXXXX)
trap 'rm -rf "$work"' EXIT
root=$work/root

# What apt reads: the name and what a clean machine must install with it.
info=$(dpkg-deb --info "$deb")
grep -q '^ Package: pagamenti$' <<<"$info" || fail "package name"
depends=$(sed -n 's/^ Depends: //p' <<<"$info")
for needed in libqt6widgets6 libqt6sql6 libqt6sql6-sqlite libpq5 qt6-translations-l10n libqt6printsupport6 libqt6svg6; do
    grep -q "$needed" <<<"$depends" || fail "Depends lacks $needed: $depends"
done
# The PostgreSQL driver, for the offices whose companies are on a server.
grep -q '^ Recommends: .*libqt6sql6-psql' <<<"$info" || fail "Recommends lacks libqt6sql6-psql"

dpkg -x "$deb" "$root"
lib=$(find "$root/usr/lib" -name libtqzdbm32.so -path '*/pagamenti/*' | head -n 1)
[ -n "$lib" ] || fail "the record-manager library is not in /usr/lib/.../pagamenti"
for file in usr/bin/pagamenti usr/bin/pagamenti-cli usr/libexec/pagamenti/pagamenti-demo \
    usr/share/pagamenti/QXARTRAC.DAT usr/share/pagamenti/causali.ini \
    usr/share/pagamenti/manual/index.html usr/share/pagamenti/D_IMG/Distinta.html \
    usr/share/applications/pagamenti.desktop \
    usr/share/icons/hicolor/scalable/apps/pagamenti.svg usr/share/man/man1/pagamenti-cli.1.gz; do
    [ -e "$root/$file" ] || fail "missing /$file"
done
[ -x "$root/usr/bin/pagamenti" ] && [ -x "$root/usr/libexec/pagamenti/pagamenti-demo" ] ||
    fail "programs not executable"
cmp -s "$root/usr/share/pagamenti/QXARTRAC.DAT" "$(dirname "$0")/../../data/QXARTRAC.DAT" ||
    fail "QXARTRAC.DAT differs from the program's"

# The menu entry starts the program as the suite does, with the package's icon.
desktop=$root/usr/share/applications/pagamenti.desktop
grep -qx 'Exec=pagamenti Pagamenti' "$desktop" || fail "menu entry's command"
grep -qx 'Icon=pagamenti' "$desktop" || fail "menu entry's icon"
grep -qx 'Exec=/usr/libexec/pagamenti/pagamenti-demo' "$desktop" || fail "demonstration action"
desktop-file-validate "$desktop" || fail "menu entry not valid"
man_page=$(zcat "$root/usr/share/man/man1/pagamenti-cli.1.gz")
grep -q '^\.TH PAGAMENTI-CLI 1' <<<"$man_page" || fail "manual page"
grep -q 'installa' <<<"$man_page" || fail "the manual page does not tell of installa"

# The package's programs, run from the unpacked root on a demonstration installation made by
# its own command line; the suite's files put in place by installa, the archives read through
# the package's record-manager library, the desktop program started and closed.
bin=$root/usr/bin
export XDG_RUNTIME_DIR=$work/run XDG_CONFIG_HOME=$work/config HOME=$work/home
mkdir -m 700 "$XDG_RUNTIME_DIR"
mkdir -p "$XDG_CONFIG_HOME" "$HOME"
export ORVIDA_INI_DIR=$work/demo
unset PAGAMENTI_RECORD_MANAGER PAGAMENTI_VBINIT_LIBRARY
"$bin/pagamenti-cli" demo "$ORVIDA_INI_DIR" --due-items 20 >/dev/null || fail "demo"
rm "$ORVIDA_INI_DIR/orvida/exe/QXARTRAC.DAT"
"$bin/pagamenti-cli" installa >/dev/null || fail "installa"
[ -f "$ORVIDA_INI_DIR/orvida/exe/QXARTRAC.DAT" ] || fail "installa wrote no QXARTRAC.DAT"
dump=$(PAGAMENTI_RECORD_MANAGER=$lib "$bin/pagamenti-cli" archive dump 38) ||
    fail "the archives through the package's record-manager library"
grep -q '^38 ' <<<"$dump" || fail "no due item read through the record-manager library"
QT_QPA_PLATFORM=offscreen PAGAMENTI_QUIT_WHEN_SHOWN=1 timeout 120 "$bin/pagamenti" Pagamenti ||
    fail "the desktop program did not start and close"
[ -f "$ORVIDA_INI_DIR/orvida/D_DEMO/Pagame.db" ] || fail "no local database after the start"
echo "package $(basename "$deb") installs and starts"
