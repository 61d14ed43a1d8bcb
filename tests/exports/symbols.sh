#!/usr/bin/env bash
# symbols.sh LIBRARY HEADER LIST: the flat functions of the library are those that the header declares and those
# of the list, and everything else that it shows belongs to the PIFWrapper classes. After a deliberate change:
# symbols.sh LIBRARY HEADER LIST --update
set -euo pipefail
export LC_ALL=C
library=$1 header=$2 list=$3

shown=$(nm -D --defined-only "$library" | awk '{ print $NF }' | sort -u)
flat=$(grep -v '^_Z' <<<"$shown" | grep -v '^__\(asan\|odr_asan\|start\|stop\)' || true)
declared=$(grep -oE '\b(new_DFDL|delete_DFDL|DFDL|DfdlCalendar_|defaultDFDLHeap_)[A-Za-z_]+\(' \
    <(tr '\n' ' ' <"$header" | grep -oE 'DFDL_API [^;]*;') | tr -d '(' | sort -u)
# Declared in pifwrapper.h, which the build makes.
declared=$(printf '%s\nnew_DFDLGrammarFromPIFWrapper\n' "$declared" | sort -u)

if [ "${4:-}" = --update ]; then
    echo "$flat" >"$list"
fi
status=0
compare() {
    diff --label "$1" --label "in the library" <(echo "$2") <(echo "$flat") || status=1
}
compare "in the headers" "$declared"
compare "in $(basename "$list")" "$(cat "$list")"
strangers=$(grep '^_Z' <<<"$shown" | c++filt | grep -vE '^((typeinfo|vtable|typeinfo name) for )?PIFWrapper::' || true)
if [ -n "$strangers" ]; then
    echo "shown though nobody may use them:" >&2
    echo "$strangers" >&2
    status=1
fi
exit $status
