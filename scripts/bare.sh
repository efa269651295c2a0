#!/usr/bin/env bash
# Do the first commands of a new user work on a Debian on which nothing is installed? Makes such a tree
# with debootstrap, clones HEAD into it, runs scripts/run.sh there and checks the reports.
#   scripts/bare.sh          Debian 12 (bookworm)
#   scripts/bare.sh trixie   another release
#   scripts/bare.sh --full   runs scripts/test.sh there as well
# Needs root; where it cannot run it says why and ends with status 77. The tree is removed at the end,
# also after an interruption. /var/cache/kelmo keeps what debootstrap has made for 30 days.
set -euo pipefail
source "$(dirname "$0")/common.sh"

release=bookworm full=
for argument in "$@"; do
    case $argument in
    --full) full=yes ;;
    -*)
        echo "usage: scripts/bare.sh [RELEASE] [--full]" >&2
        exit 2
        ;;
    *) release=$argument ;;
    esac
done

cannot_run() {
    echo "scripts/bare.sh cannot run: $*" >&2
    exit 77
}

[ "$(id -u)" -eq 0 ] || cannot_run "it needs root, to mount and to change the root directory"
unshare --mount --pid --fork true 2>/dev/null || cannot_run "this machine does not allow mounts"
install_missing debootstrap git libxml2-utils ||
    cannot_run "debootstrap, git or libxml2-utils cannot be installed"

# --- where packages come from -------------------------------------------------------------------

# Format of a line: one for each enabled source of Debian that apt has fetched.
apt_sources() {
    apt-get indextargets --format "$1" 'Created-By: Packages' 'Origin: Debian' 'Component: main'
}
# shellcheck disable=SC2016 # apt-get replaces these
codenames='$(REPO_URI) $(CODENAME)' files='$(SOURCESENTRY)'
[ -n "$(apt_sources "$codenames")" ] || apt-get update -qq || true
sources=$(apt_sources "$codenames" | sort -u |
    sed -nE "s,^(https?://\S+) [a-z]+(|-updates|-security)$,deb \1 $release\2 main,p")
mirror=$(awk -v suite="$release" '$3 == suite { print $2; exit }' <<<"$sources")
[ -n "$mirror" ] || cannot_run "no enabled apt source is a mirror of Debian"
eval "$(apt-config shell http_proxy Acquire::http::Proxy)"
export http_proxy
wget --quiet --spider --timeout 20 --tries 2 "${mirror%/}/dists/$release/InRelease" ||
    cannot_run "${mirror%/} does not answer for release $release"

# The keys of these sources, in one file.
keyrings() {
    cat /usr/share/keyrings/debian-archive-keyring.gpg
    find /etc/apt/trusted.gpg.d -name '*.gpg' -exec cat {} +
    apt_sources "$files" | sed 's/:[0-9]*$//' | sort -u |
        xargs sed -nE 's,.*signed-by[:=] *(/[^] ,]+\.gpg).*,\1,Ip' | sort -u | xargs --no-run-if-empty cat
}

# --- the tree -----------------------------------------------------------------------------------

cache=/var/cache/kelmo
base=$cache/$release.tar.gz
work=$cache/tree.$$
tree=$work/root
clone=$tree/root/kelmo
child=

# The first process of a name space takes all others and the mounts with it.
clean_up() {
    local first
    if [ -n "$child" ]; then
        read -r first <"/proc/$child/task/$child/children" && kill -KILL "$first" ||
            kill -KILL "$child" || true
        wait "$child" || true
    fi 2>/dev/null
    rm -rf --one-file-system "$work"
}

# Runs a command in name spaces of its own: its mounts and processes end with it, and it ends with
# this script. In the background, because a trap would wait for the end of a command before it.
isolated() {
    local status=0
    setpriv --pdeathsig KILL unshare --mount --pid --fork --kill-child "$@" &
    child=$!
    wait "$child" || status=$?
    child=
    return "$status"
}

run_there() {
    # shellcheck disable=SC2016 # for the inner shell
    isolated bash -euc '
        mount -t proc proc "$0/proc"
        mount --rbind /dev "$0/dev"
        mount -t tmpfs tmpfs "$0/dev/shm"
        env -i --default-signal HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin chroot "$0" "$@" ||
            exit $?' "$tree" "$@"
}

make_tree() {
    if [ -n "$(find "$base" -mtime -30 2>/dev/null)" ]; then
        tar -C "$tree" -xzf "$base"
        return
    fi
    echo "Making a bare $release from $mirror ..."
    keyrings >"$work/keyring.gpg"
    isolated debootstrap --variant=minbase --keyring="$work/keyring.gpg" "$release" "$tree" "$mirror" \
        >"$work/log" 2>&1 || {
        cat "$work/log" >&2
        return 1
    }
    rm -f "$tree"/var/cache/apt/archives/*.deb
    cp "$work/keyring.gpg" "$tree/etc/apt/trusted.gpg.d/bare.gpg"
    tar -C "$tree" -czf "$work/base.tar.gz" .
    mv "$work/base.tar.gz" "$base"
}

# Sources of packages, proxies and names of hosts are those of this machine.
connect_tree() {
    echo "$sources" >"$tree/etc/apt/sources.list"
    apt-config dump | grep -E '^Acquire::(https?|Check)' >"$tree/etc/apt/apt.conf.d/bare" || true
    cp -L /etc/resolv.conf /etc/hosts "$tree/etc"
    [[ $sources != *https:* ]] ||
        install -D -m 644 -t "$tree/etc/ssl/certs" /etc/ssl/certs/ca-certificates.crt
}

# --- the reports --------------------------------------------------------------------------------

kinds=(bound unbound contacts binding_residues binding_status)

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# Every sample has all its reports, scripts/run.sh has named each of them, the XML is whole, and a table
# has as many lines as the XML has records. Bound reports are about every residue of the sample.
check_reports() { # output of scripts/run.sh
    local reports=$clone/build/sample-reports samples wanted written sample kind xml
    local table records lines
    samples=$(cd "$clone/data/samples" && basename -s .pdb -- *.pdb)
    wanted=$(for sample in $samples; do
        for kind in "${kinds[@]}"; do printf '%s\n' "${sample}_STAMP_$kind".{tbl,xml}; done
    done | sort)
    written=$(cd "$reports" && printf '%s\n' * | sort)
    diff <(echo "$wanted") <(sed -E 's/_[0-9]{12}_/_STAMP_/' <<<"$written") >&2 ||
        fail "not the reports that there should be"
    diff <(echo "$written") <(sed -n 's/^  //p' "$1" | sort) >&2 ||
        fail "scripts/run.sh does not name the reports that it has written"
    xmllint --noout "$reports"/*.xml || fail "an XML report is not whole"
    for xml in "$reports"/*.xml; do
        table=${xml%.xml}.tbl
        records=$(grep -cE '^ *<(residue|contact|binding_residue)>' "$xml" || true)
        lines=$(grep -cE '^ *[A-Z] ' "$table" || true)
        [ "$lines" -eq "$records" ] || fail "$table has $lines lines for $records records"
        [[ $xml != *_bound.xml ]] || [ "$records" -eq "$(residues "${xml##*/}")" ] ||
            fail "$xml does not name all residues"
    done
    echo "All $(wc -l <<<"$written") reports are named and whole."
}

residues() { # name of a report: how many its sample has
    awk '/^ATOM/ { print substr($0, 22, 6) }' "$clone/data/samples/${1%%_*}.pdb" | sort -u | wc -l
}

# --- the commands -------------------------------------------------------------------------------

trap clean_up EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM
mkdir -p "$cache"
# What was killed outright could not remove its tree.
for left in "$cache"/tree.*; do
    [ -e "/proc/${left##*.}" ] || rm -rf --one-file-system "$left"
done
mkdir -p "$tree"
make_tree
connect_tree
git clone --quiet "$root" "$clone"

echo "scripts/run.sh on a bare $release ..."
SECONDS=0
run_there /root/kelmo/scripts/run.sh >"$work/log" 2>&1 || {
    cat "$work/log" >&2
    fail "scripts/run.sh on a bare $release"
}
cat "$work/log"
megabytes=$(du -s --block-size=1000000 "$tree/var/cache/apt/archives" | cut -f 1)
echo "It took $SECONDS s and downloaded $megabytes MB of packages."
check_reports "$work/log"

[ -n "$full" ] || exit 0
echo "scripts/test.sh on a bare $release ..."
run_there /root/kelmo/scripts/test.sh || fail "scripts/test.sh on a bare $release"
