#!/usr/bin/env bash
# Reads and copies XML documents with the examples:
#
#   tests/examples/copy-documents.sh EXAMPLES TOOL MOST SECONDS DIR...
#
# EXAMPLES is the folder of the programs. No more than MOST documents below the folders are taken, and
# after so many SECONDS none but the first ones, however busy the machine is. Every copy is well-formed
# to the tool, and to xmllint where that is installed, and the tool finds no difference. What the tool
# takes for well-formed, the examples copy, or end with the status 1 and a message; everything else
# they refuse in that way.
set -uo pipefail
export LC_ALL=C

examples=$1 tool=$2 most=$3 seconds=$4
folders=("${@:5}")
here=$(dirname "${BASH_SOURCE[0]}")
xmllint=$(command -v xmllint) ||
  printf 'xmllint (Debian package libxml2-utils) is not installed: its part is left out\n'

work=$(mktemp --directory)
trap 'rm -rf "$work"' EXIT

# fail WHAT: tells what went wrong with the document, with what was said.
fail() {
  failures=$((failures + 1))
  printf '%s: %s\n' "$document" "$1"
  sed 's/^/  /' "$said"
}

run() { "$@" >"$said" 2>&1; }

# copy FROM TO TYPE...: status 1 where the program refuses to copy.
copy() {
  "$examples/copy_document" "${@:3}" <"$1" >"$2" 2>"$said"
  local status=$?
  ((status != 0)) || return 0
  rm "$2"
  ((status == 1)) && [[ -s $said ]] || fail "ends copy_document with the status $status"
  return 1
}

# copy_well FROM TO WHAT TYPE...: and the copy is good.
copy_well() {
  if ! copy "$1" "$2" "${@:4}"; then
    refused=$((refused + 1))
    return 1
  fi
  run "$tool" diff "$document" "$2" || fail "differs $3"
}

examine() {
  local text=$copies/$i.xml binary=$copies/$i.fi back=$copies/$i.back.xml
  # What is no XML 1.0, the tool tells.
  if ! run "$tool" check --from XML10 "$document"; then
    ! copy "$document" "$text" || fail 'is not well-formed, but copied'
    return
  fi
  documents=$((documents + 1))
  copy_well "$document" "$text" 'as XML text' XML10 XML10
  if copy_well "$document" "$binary" 'as Fast Infoset' XML10 X891; then
    copy_well "$binary" "$back" 'from Fast Infoset' X891 XML10
    rm -f "$binary"
  fi
  if "$examples/pack" <"$document" >"$binary" 2>"$said"; then
    run "$tool" diff "$document" "$binary" || fail 'differs as packed'
    rm -f "$binary"
  else
    refused=$((refused + 1))
    [[ -s $said ]] || fail 'is refused by pack without a word'
  fi
  "$examples/read_elements" <"$document" >/dev/null 2>"$said" || fail 'is refused by read_elements'
}

files=()
while IFS= read -r -d '' document; do
  files+=("$document")
done < <(bash "$here/../support/list-documents.sh" "$most" "${folders[@]}")

# examine_share NUMBER: examines the share of one worker, and counts.
examine_share() {
  local copies=$work/copies/$1 said=$work/said.$1 i document
  local documents=0 refused=0 failures=0
  mkdir -p "$copies"
  for ((i = $1; i < ${#files[@]} && (i < first || SECONDS < seconds); i += workers)); do
    document=${files[i]}
    examine
  done
  if [[ -n $xmllint ]]; then
    document='A copy'
    find "$copies" -name '*.xml' -print0 |
      xargs --null --no-run-if-empty "$xmllint" --nonet --noout >"$said" 2>&1 ||
      fail 'is not well-formed to xmllint'
  fi
  printf '%s\n' "$documents $refused $failures" >"$work/counts.$1"
}

workers=$(nproc)
first=20
SECONDS=0  # Finding them does not count.
for ((worker = 0; worker < workers; ++worker)); do
  examine_share "$worker" &
done
wait
awk '{ documents += $1; refused += $2; failures += $3 }
  END {
    printf "%d documents, %d copies refused, %d failures\n", documents, refused, failures
    exit failures > 0 || documents == 0
  }' "$work"/counts.*
