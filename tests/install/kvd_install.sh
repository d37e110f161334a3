#!/bin/bash
# Installs the build into a temporary root, runs the installed kvd on the
# default fleet through its own run path, checks the manual page and the bash
# completion, then uninstalls and expects nothing left behind.
# Usage: kvd_install.sh source-dir build-dir
set -u
src=$1 build=$2
root=$(mktemp -d /tmp/kvd_install.XXXXXX)
trap 'rm -rf "$root"' EXIT
fails=0
fail() { echo "FAIL: $*"; fails=$((fails + 1)); }

# Its own manifest (component install), so a real "make install" keeps its own.
DESTDIR=$root cmake --install "$build" --prefix /usr --component Unspecified >/dev/null || fail "cmake --install"
manifest=$build/install_manifest_Unspecified.txt

bin=$root/usr/bin/kvd
lib=$(ls "$root"/usr/lib/*/kvd/libkvd.so.3 "$root"/usr/lib/kvd/libkvd.so.3 2>/dev/null | head -1)
[ -x "$bin" ] || fail "no bin/kvd"
[ -n "$lib" ] || fail "no lib/kvd/libkvd.so.3"
[ -z "$(find "$root" -name 'libkvd.so')" ] || fail "a development link was installed"
readelf -d "$bin" | grep -q 'RUNPATH.*\$ORIGIN/\.\./lib' || fail "kvd has no \$ORIGIN RUNPATH"
# the installed library, not the build tree's, answers
found=$(env -u LD_LIBRARY_PATH ldd "$bin" | awk '/libkvd.so.3/ {print $3}')
[ -n "$found" ] && [ "$(readlink -f "$found")" = "$(readlink -f "$lib")" ] ||
    fail "kvd does not find the installed libkvd: $(ldd "$bin" | grep libkvd)"
out=$(echo quit | env -u KVD_SIM_FLEET "$bin")
status=$?
[ $status = 1 ] || fail "installed kvd exit status $status"
grep -q '^Found 3 adapters' <<<"$out" || fail "installed kvd: $out"

man=$root/usr/share/man/man1/kvd.1
[ -f "$man" ] || fail "no man page"
warn=$(groff -ww -man -z "$man" 2>&1)
[ -z "$warn" ] || fail "groff warns: $warn"
# every variable the library reads has its entry
for v in $(grep -rhoE 'getenv\("KVD_SIM_[A-Z_]+"' "$src/sim" | grep -oE 'KVD_SIM_[A-Z_]+' | sort -u); do
    grep -qx "\.B $v" "$man" || fail "man page lacks $v"
done
[ -f "$root/usr/share/doc/kvd/fleet.md" ] || fail "no docs"

comp=$root/usr/share/bash-completion/completions/kvd
[ -f "$comp" ] || fail "no bash completion"
got=$(bash -c '
    source "$1"
    complete -p kvd
    reply() { COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); COMPREPLY=(); _kvd; printf "[%s]" "${COMPREPLY[@]}"; echo; }
    reply kvd -
    reply kvd -b 3
    reply kvd -c mb
    reply kvd -c "\"mbox rdr"
    reply kvd -c "set li"
    reply kvd -c "sd_set_bucket p"
    reply kvd -c "tarvo reset g"
    reply kvd -c "tarvo loopback "
    reply kvd -c "rdpci 0"
    reply kvd -c "sli4iov re"
' _ "$comp")
want='complete -F _kvd kvd
[-a][-b][-c][-h]
[3][30][31]
[mbox]
[mbox rdrcfg][mbox rdrpi][mbox rdrev][mbox rdrev2]
[set lines]
[sd_set_bucket power2]
[tarvo reset golden]
[]
[]
[sli4iov read]'
[ "$got" = "$want" ] || fail "completion: got
$got"

make -s --no-print-directory -C "$src" uninstall BUILD="$build" DESTDIR="$root" INSTALL_MANIFEST="$manifest" >/dev/null ||
    fail "make uninstall"
left=$(find "$root" -type f -o -type l)
[ -z "$left" ] || fail "left after uninstall: $left"
[ ! -e "$(dirname "${lib:-$root/x}")" ] || fail "private library folder left"
[ ! -e "$manifest" ] || fail "manifest left"

[ $fails = 0 ] && echo "install: ok"
exit $((fails > 0))
