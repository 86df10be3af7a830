#!/usr/bin/env bash
# Converts every XML document below folders to Fast Infoset and back, and to XML text again. Each copy
# is compared with its original: event for event by the tool, and by parsers that know nothing of this
# library, in the canonical form of libxml2 and in the events of Xerces-C++.
#
#   tests/conversion/corpus.sh [OPTION]... DIR...
#
#   --tool PROGRAM     the tool; by default that of build/release or build/debug, or the installed one
#   --xmllint PROGRAM  by default the installed one; no name means none
#   --xerces PROGRAM   the program of tests/conversion/xerces
#   --most COUNT       no more than so many documents, from all folders alike
#   --seconds COUNT    after so long a time, begin with no document but the first ones
#
# Files that are not well-formed XML are counted and left alone. The exit status is 1 if a copy
# differs, or cannot be made for a reason that is not among those below.
set -uo pipefail
export LC_ALL=C
script=${BASH_SOURCE[0]}

# Why the tool may refuse to make a copy, by its own words.
refusals=(
  # No event tells of a reference in an attribute value to an entity that was not read.
  'The entity "[^"]*" was not read: a reference to it in an attribute value is lost'
)

# Where a comparison is no use, by the end of the document's name.
exceptions=(
  # A conditional section of the external subset depends on a parameter entity of the internal one,
  # whose declaration Fast Infoset does not keep.
  'from Fast Infoset|xmltest/valid/not-sa/014.xml'
  'from Fast Infoset|xmltest/valid/not-sa/015.xml'
  'from Fast Infoset|xmltest/valid/not-sa/016.xml'
  # An external entity depends on an entity of the internal subset, or on its defaults of attributes.
  'from Fast Infoset|xmltest/valid/ext-sa/012.xml'
  'from Fast Infoset|xmltest/valid/ext-sa/013.xml'
  # xmllint makes a line feed of "&#13;" in the value of an entity.
  'xmllint|xmltest/valid/sa/068.xml'
  # Xerces-C++ leaves blanks around the value of an attribute of the type NOTATION.
  'Xerces-C++|sun/valid/not-sa04.xml'
  'Xerces-C++|sun/valid/sa02.xml'
  'Xerces-C++|sun/valid/sa04.xml'
)

fail_usage() {
  printf 'usage: %s [OPTION]... DIR...\n' "$script" >&2
  exit 2
}

tool='' xerces='' most=0 seconds=0
xmllint=$(command -v xmllint)
while (($# > 0)) && [[ $1 == --* ]]; do
  (($# > 1)) || fail_usage
  case $1 in
    --tool) tool=$2 ;;
    --xmllint) xmllint=$2 ;;
    --xerces) xerces=$2 ;;
    --most) most=$2 ;;
    --seconds) seconds=$2 ;;
    *) fail_usage ;;
  esac
  shift 2
done
(($# > 0)) || fail_usage
folders=()
for folder in "$@"; do
  [[ -d $folder ]] || fail_usage
  folders+=("$(realpath "$folder")")
done

here=$(dirname "$script")
if [[ -z $tool ]]; then
  for tool in "$here"/../../build/{release,debug}/bin/tavrin "$(command -v tavrin)"; do
    [[ -x $tool ]] && break
  done
fi
programs=("$tool")
[[ -z $xmllint ]] || programs+=("$xmllint")
[[ -z $xerces ]] || programs+=("$xerces")
for program in "${programs[@]}"; do
  command -v "$program" >/dev/null || {
    printf '%s: there is no program "%s"; build it first, or name it\n' "$script" "$program" >&2
    exit 2
  }
done
tool=$(realpath "$(command -v "$tool")")  # It runs where the documents are.

work=$(mktemp --directory)
trap 'rm -rf "$work"' EXIT

# --- What is looked at ---

# Text that could be XML begins with "<", maybe behind a mark of byte order or white space.
may_be_xml() {
  head --bytes=256 "$1" | tr -d '\000\357\273\277\376\377' | grep -qm1 '^[[:space:]]*<'
}

list_files() {
  if ((most > 0)); then
    bash "$here/../support/list-documents.sh" "$most" "${folders[@]}"
  else
    find "${folders[@]}" -type f -print0 | sort --zero-terminated --unique
  fi
}

# Whether the document names other files, and whether some of them are parameter entities.
look_at_names() {
  names_files=0 has_parameters=0
  grep -qzaE '<!(DOCTYPE|ENTITY)[^>]*(SYSTEM|PUBLIC)' "$document" || return 0
  names_files=1
  ! grep -qzaE '<!ENTITY[[:space:]]+%[^>]*(SYSTEM|PUBLIC)' "$document" || has_parameters=1
}

# --- One document ---

# fail WHAT: tells what went wrong with the document, with what was said.
fail() {
  failures=$((failures + 1))
  printf '%s: %s\n' "$document" "$1"
  sed 's/^/  /' "$said"
}

# run PROGRAM ARGUMENT...: keeps what it says.
run() { "$@" >"$said" 2>&1; }

# is_exception WHAT
is_exception() {
  local exception
  for exception in "${exceptions[@]}"; do
    [[ $1 == *"${exception%%|*}"* && $document == *"/${exception#*|}" ]] && return
  done
  return 1
}

# convert FROM TO WHAT [--entities]: makes a copy, unless that is refused.
convert() {
  run "$tool" convert --force ${4+"$4"} "$1" "$2"
  local status=$? refusal
  if ((status == 0)); then
    has_way_back=1
    ! grep -q ': warning: The copy cannot be written as XML text again: ' "$said" || has_way_back=0
    return 0
  fi
  for refusal in "${refusals[@]}"; do
    if ((status == 1)) && grep -q "$refusal" "$said"; then
      refused=$((refused + 1))
      return 1
    fi
  done
  fail "cannot be written $3"
  return 1
}

# convert_back FROM TO WHAT: makes a copy in XML text of the one that was made last. There is none if
# that was warned of.
convert_back() {
  if ((has_way_back)); then
    convert "$@"
    return
  fi
  ! run "$tool" convert --force "$1" "$2" || fail "can be written $3, in spite of a warning"
  refused=$((refused + 1))
  return 1
}

# Both read a copy where the document is, so that relative names lead to the same files.
#
# is_same COPY [--entities]
is_same() ( cd "${document%/*}" && run "$tool" diff ${2+"$2"} "$document" - <"$1" )
# canonical FILE TO: writes the canonical form, with entities and the external subset.
canonical() ( cd "${document%/*}" && "$xmllint" --nonet --c14n - <"$1" >"$2" 2>"$said" )

# judge COPY WHAT [--entities]: compares a copy in XML text with the document.
judge() {
  ! is_exception "$2" || return 0
  is_same "$1" ${3+"$3"} || fail "differs $2"
  [[ -n $xmllint ]] && ! is_exception xmllint || return 0
  if [[ ! -e $scratch/canonical ]]; then
    canonical "$document" "$scratch/canonical" || : >"$scratch/canonical"
  fi
  [[ -s $scratch/canonical ]] || return 0  # It does not read the document.
  if ! canonical "$1" "$scratch/other"; then
    fail "is not read by xmllint $2"
  elif ! run cmp "$scratch/canonical" "$scratch/other"; then
    fail "differs $2, in the canonical form"
  fi
  seen_by_xmllint=$((seen_by_xmllint + 1))
}

# judge_events COPY WHAT [--declarations]: the same by Xerces-C++, which takes for empty what is
# external.
judge_events() {
  [[ -n $xerces ]] && ! is_exception Xerces-C++ || return 0
  run "$xerces" ${3+"$3"} "$document" "$1"
  case $? in
    0) ;;
    1) fail "differs $2, to Xerces-C++" ;;
    2) return ;;  # It does not read the document.
    *) fail "cannot be compared by Xerces-C++ $2" ;;
  esac
  seen_by_xerces=$((seen_by_xerces + 1))
}

# What the document is without other files.
examine_alone() {
  local binary=$scratch/copy.fi back=$scratch/back.xml text=$scratch/copy.xml
  if convert "$document" "$text" 'as XML text'; then
    judge "$text" 'as XML text'
    judge_events "$text" 'as XML text' --declarations
  fi
  if convert "$document" "$binary" 'as Fast Infoset'; then
    binary_octets=$((binary_octets + $(stat --format=%s "$binary")))
    run "$tool" diff "$document" "$binary" || fail 'differs in Fast Infoset'
    # Declarations of parameter entities are lost, and with them what other parsers make of it.
    if convert_back "$binary" "$back" 'from Fast Infoset'; then
      if ((has_parameters)); then
        is_same "$back" || fail 'differs from Fast Infoset'
      else
        judge "$back" 'from Fast Infoset'
        judge_events "$back" 'from Fast Infoset'
      fi
    fi
  fi
}

# The same with what it names, where that is files that can be read.
examine_with_files() {
  local binary=$scratch/whole.fi back=$scratch/whole-back.xml text=$scratch/whole.xml
  run "$tool" check --entities --from XML10 "$document" || return 0
  if convert "$document" "$text" 'as XML text, files read' --entities; then
    judge "$text" 'as XML text, files read' --entities
  fi
  if convert "$document" "$binary" 'as Fast Infoset, files read' --entities &&
    convert_back "$binary" "$back" 'from Fast Infoset, files read'; then
    judge "$back" 'from Fast Infoset, files read' --entities
  fi
}

examine() {
  # As text, whatever its first octets are: Fast Infoset is what this makes itself.
  if ! run "$tool" check --from XML10 "$document"; then
    strangers=$((strangers + 1))
    return
  fi
  documents=$((documents + 1))
  text_octets=$((text_octets + $(stat --format=%s "$document")))
  look_at_names
  examine_alone
  ((!names_files)) || examine_with_files
  rm -f "$scratch"/*
}

# --- All documents ---

files=()
while IFS= read -r -d '' document; do
  files+=("$document")
done < <(list_files)

# examine_share NUMBER: examines the share of one worker. What it finds stands in files, numbered as
# the documents are.
examine_share() {
  local scratch=$work/scratch/$1 said=$work/said/$1 i
  mkdir -p "$scratch"
  documents=0 strangers=0 refused=0 failures=0 text_octets=0 binary_octets=0
  seen_by_xmllint=0 seen_by_xerces=0 left_out=0
  for ((i = $1; i < ${#files[@]}; i += workers)); do
    if ((seconds > 0 && i >= first && SECONDS >= seconds)); then
      left_out=$((left_out + 1))
      continue
    fi
    document=${files[i]}
    ! may_be_xml "$document" || examine >"$work/reports/$(printf '%08d' "$i")"
  done
  printf '%s\n' "$documents $strangers $text_octets $binary_octets $refused $seen_by_xmllint \
$seen_by_xerces $left_out $failures" >"$work/counts/$1"
}

workers=$(nproc)
first=20   # Those are taken however busy the machine is.
SECONDS=0  # Finding them does not count.
mkdir -p "$work"/{scratch,said,reports,counts}
for ((worker = 0; worker < workers; ++worker)); do
  examine_share "$worker" &
done
wait

find "$work/reports" -type f -size +0 -print0 | sort --zero-terminated | xargs --null --no-run-if-empty cat
awk '
  { for (i = 1; i <= NF; ++i) sum[i] += $i }
  END {
    split("documents;not well-formed XML;octets as XML text;octets as Fast Infoset;" \
          "refused copies;seen by xmllint;seen by Xerces-C++;left out for time;differences",
          names, ";")
    for (i = 1; i <= 9; ++i) printf "%-24s %12d\n", names[i], sum[i]
    exit sum[9] > 0
  }' "$work"/counts/*
