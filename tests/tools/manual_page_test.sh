#!/usr/bin/env bash
# manual_page_test.sh VEXOSH: the manual page formats without a warning, and has every option, every
# command of `help`, how frames are written, the exit status and the environment.
set -euo pipefail

vexosh=$1
if ! command -v groff >/dev/null; then
    echo "groff is not installed"
    [ -n "${VEXOLC_REQUIRE_HOSTS:-}" ] && exit 1 || exit 77
fi
page=$(mktemp)
trap 'rm -f "$page"' EXIT
"$vexosh" --man >"$page"

warnings=$(groff -man -Tutf8 -ww -z "$page" 2>&1)
[ -z "$warnings" ] || { echo "$warnings"; exit 1; }

shown=$(groff -man -Tascii -P-cbou -rLL=300n "$page")
missing=0
while read -r text; do
    grep -qF -- "$text" <<<"$shown" || { echo "missing: $text"; missing=1; }
done < <("$vexosh" --help | grep -oE -- '--[a-z-]+'; printf '%s\n' hex:BYTES 'EXIT STATUS' NO_COLOR)
# The words of a command stand between two and two or more blanks.
while read -r command; do
    grep -qE "^ +$command( |$)" <<<"$shown" || { echo "missing: $command"; missing=1; }
done < <("$vexosh" -m -c help | sed -nE 's/^  ([a-z0-9][a-z0-9-]*( [a-z0-9-]+)*)  +.*/\1/p')
exit $missing
