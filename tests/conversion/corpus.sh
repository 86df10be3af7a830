#!/usr/bin/env bash
# Converts every XML document below a folder to Fast Infoset and back, and to XML text again, and
# compares each copy with its original, event for event.
#
#   tests/conversion/corpus.sh DIR [TOOL]
#
# TOOL is the tool to use: by default that of build/release or build/debug, or the installed one.
# Files that are not well-formed XML are counted and left alone. The exit status is 1 if a copy
# differs or cannot be made.
set -uo pipefail
export LC_ALL=C

usage() {
  printf 'usage: %s DIR [TOOL]\n' "${BASH_SOURCE[0]}" >&2
  exit 2
}
(($# == 1 || $# == 2)) && [[ -d $1 ]] || usage
folder=$1
[[ $folder == -* ]] && folder=./$folder  # Or find takes it for an option.
here=$(dirname "${BASH_SOURCE[0]}")

tool=${2-}
for candidate in "$here"/../../build/{release,debug}/bin/tavrin "$(command -v tavrin)"; do
  [[ -z $tool && -x $candidate ]] && tool=$candidate
done
[[ -x $tool ]] || {
  printf '%s: there is no tool; build it first, or name it\n' "${BASH_SOURCE[0]}" >&2
  exit 2
}

work=$(mktemp --directory)
trap 'rm -rf "$work"' EXIT

documents=0 strangers=0 failures=0 text_octets=0 binary_octets=0

# fail DOCUMENT STEP: tells what went wrong, with what the tool said.
fail() {
  failures=$((failures + 1))
  printf '%s: %s\n' "$1" "$2"
  sed 's/^/  /' "$work/said"
}

# run TOOL-ARGUMENTS: keeps what the tool says.
run() { "$tool" "$@" >"$work/said" 2>&1; }

while IFS= read -r -d '' document; do
  # Text that could be XML begins with "<", maybe behind a mark of byte order or white space.
  head --bytes=256 "$document" | tr -d '\000\357\273\277\376\377' | grep -qm1 '^[[:space:]]*<' ||
    continue
  # As text, whatever its first octets are: Fast Infoset is what this makes itself.
  if ! run check --from XML10 "$document"; then
    strangers=$((strangers + 1))
    continue
  fi
  documents=$((documents + 1))
  binary=$work/copy.fi back=$work/back.xml text=$work/copy.xml
  if ! run convert --force "$document" "$binary"; then
    fail "$document" 'cannot be written as Fast Infoset'
    continue
  fi
  text_octets=$((text_octets + $(stat --format=%s "$document")))
  binary_octets=$((binary_octets + $(stat --format=%s "$binary")))
  run diff "$document" "$binary" || fail "$document" 'differs in Fast Infoset'
  if run convert --force "$binary" "$back"; then
    run diff "$document" "$back" || fail "$document" 'differs when it comes back from Fast Infoset'
  else
    fail "$document" 'does not come back from Fast Infoset'
  fi
  if run convert --force "$document" "$text"; then
    run diff "$document" "$text" || fail "$document" 'differs as XML text'
  else
    fail "$document" 'cannot be written as XML text'
  fi
done < <(find "$folder" -type f -print0 | sort --zero-terminated)

printf '%-24s %12d\n' 'documents' "$documents" 'not well-formed XML' "$strangers" \
  'octets as XML text' "$text_octets" 'octets as Fast Infoset' "$binary_octets" \
  'differences' "$failures"
((failures == 0))
