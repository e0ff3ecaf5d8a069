#!/usr/bin/env bash
# A payment run headless, as a script runs it with pagamenti-cli on a fresh demo installation:
# a distinta of the November transfers, its due items marked, the completeness check with the
# missing bank data entered in the suite's archives and the check run again, a test print, the
# bank file, the list, the RiBa file of a customers' distinta, and a distinta deleted with its
# due items freed. Each bank file must be the very file the desktop program writes for the same
# distinta (tst_e2e_desktopbankfile).
#
# Usage: cli_run.sh BIN_DIR DESKTOP_BANKFILE_TEST
set -euo pipefail

bin=$1
desktop=$2
# Short: the suite keeps at most 39 characters of a directory in its ini files.
work=$(mktemp -d /tmp/pgcXXXXXX)
trap 'rm -rf "$work"' EXIT
export ORVIDA_INI_DIR=$work/demo
# The desktop program's single running copy lives in a private runtime directory.
export XDG_RUNTIME_DIR=$work/run
mkdir -m 700 "$XDG_RUNTIME_DIR"
unset PAGAMENTI_RECORD_MANAGER

fail() {
    echo "FAIL: $*" >&2
    exit 1
}
cli() { "$bin/pagamenti-cli" "$@"; }
# The due items of archive 38 put in a distinta on a day (yyyymmdd) by the presenting bank.
marked_on() { cli archive dump 38 | grep -c "mark_dist=B mark_pres=B data_dist=$1 abi_pres=03069 cab_pres=13201" || true; }
# The report's error lines: account and error code.
report_errors() { sed -n '7,$p' "$1" | tr -d '\r' | sed '/^---/,$d' | awk '{print $1, $NF}'; }

cli demo "$ORVIDA_INI_DIR" --today 21/11/2026 >/dev/null

# The November transfers presented by the company bank, dated 23/11/2026.
n=$(cli new --bank 03069/13201 --due-from 01/11/2026 --due-to 30/11/2026 --type 6 \
    --date 23/11/2026 --value-date 25/11/2026)
[[ $n =~ ^[0-9]+$ ]] || fail "new: $n"
rows=$(cli show "$n" | sed -n 's/^N. Disp.: *\([0-9]*\).*/\1/p')
((rows > 0)) || fail "the distinta has no rows"
[[ $(marked_on 20261123) == "$rows" ]] || fail "due items marked: $(marked_on 20261123) of $rows"

# The check finds rows without bank data (exit status 1) ...
set +e
report=$(cli check "$n")
status=$?
set -e
[[ $status == 1 ]] || fail "check: exit status $status"
incomplete=$(report_errors "$report" | awk '$2 == 1 || $2 == 2 {print $1}' | sort -u)
[[ -n $incomplete ]] || fail "check: no account without bank data"
# ... the suite's archive gets their bank data, and the check finds them no more.
for account in $incomplete; do
    echo "3 * ind_clifor=F cod_clifor=$account banca=05034 agenzia=51020 conto=000012345678" \
        "iban_paese=IT04 iban_resto=K0503451020000012345678"
done >"$work/banks.txt"
cli archive load "$work/banks.txt" >/dev/null
report=$(cli check "$n") || true
if report_errors "$report" | awk '$2 == 1 || $2 == 2' | grep -q .; then
    fail "bank data still missing after the archive load"
fi

# A test print, readable.
cli print "$n" --pdf "$work/prova.pdf" --totals
pdftotext "$work/prova.pdf" - | grep -q "STAMPA DI PROVA" || fail "the test print is not marked"

# The bank file: 120 characters and CR LF a line (48 for the "70" records), one disposition
# per row.
cli cbi "$n" --out "$work/cli.txt" >/dev/null
awk '{w = substr($0, 2, 2) == "70" ? 49 : 121} length($0) != w || !/\r$/ {bad = 1} END {exit bad}' \
    "$work/cli.txt" || fail "line widths"
[[ $(grep -c '^ 10' "$work/cli.txt") == "$rows" ]] || fail "dispositions"
cli list | grep -q "^ *$n .* F " || fail "the distinta is not presented: $(cli list)"

# The desktop program's file for the same distinta. The flat file holds no date but the
# distinta's own (its creation and value dates, fixed above), so the two files must be equal
# byte for byte.
E2E_DISTINTA=$n E2E_BANKFILE=$work/desktop.txt "$desktop" >"$work/desktop.log" 2>&1 ||
    { cat "$work/desktop.log" >&2; fail "desktop bank file"; }
cmp "$work/cli.txt" "$work/desktop.txt" || fail "the desktop and the command line files differ"

# The demo's customers of ricevute bancarie: their RiBa file, 120 bytes and CR LF a line, from
# the command line and from the desktop program, the same byte for byte.
c=$(cli new --bank 03069/13201 --customers --type 1 --account-from 100101 --account-to 100106 \
    --date 22/11/2026)
[[ $c =~ ^[0-9]+$ ]] || fail "new --customers: $c"
cli riba "$c" --out "$work/riba_cli.txt" >/dev/null
awk 'length($0) != 121 || !/\r$/ {bad = 1} END {exit bad}' "$work/riba_cli.txt" || fail "RiBa line widths"
[[ $(grep -c '^ 14' "$work/riba_cli.txt") == $(cli show "$c" | sed -n 's/^N. Disp.: *\([0-9]*\).*/\1/p') ]] ||
    fail "RiBa receivables"
E2E_DISTINTA=$c E2E_BANKFILE=$work/riba_desktop.txt "$desktop" >"$work/desktop.log" 2>&1 ||
    { cat "$work/desktop.log" >&2; fail "desktop RiBa file"; }
cmp "$work/riba_cli.txt" "$work/riba_desktop.txt" || fail "the desktop and the command line RiBa files differ"

# A distinta of the October transfers, deleted: its due items are free again.
m=$(cli new --bank 03069/13201 --due-from 01/10/2026 --due-to 31/10/2026 --type 6 --date 24/11/2026)
(($(marked_on 20261124) > 0)) || fail "October's due items not marked"
cli --yes delete "$m" >/dev/null
[[ $(marked_on 20261124) == 0 ]] || fail "due items still marked after the delete"
cli show "$m" >/dev/null 2>&1 && fail "the deleted distinta is still there"
[[ $(marked_on 20261123) == "$rows" ]] || fail "the first distinta lost its due items"
echo "payment run done: distinta $n, $rows rows"
