# check-compared.sh TASK LIBRARY PROGRAMS TAVRIN: a task of the comparison does, with a library, what
# it does with all: TASK/LIBRARY below the folder PROGRAMS.
set -uo pipefail
task=$1
program=$3/$1/$2
tavrin=$4
cd "$(dirname "${BASH_SOURCE[0]}")/compared"
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
output=$folder/output
errors=$folder/errors
failures=0

fail() {
  printf '%s\n' "$1" >&2
  failures=1
}

# expect STATUS INPUT [ARGUMENT...]: runs the program.
expect() {
  local status=0
  timeout 20 "$program" "${@:3}" <"$2" >"$output" 2>"$errors" || status=$?
  ((status == $1)) || fail "$2 ${*:3}: the exit status is $status, not $1: $(cat "$errors")"
}

# What the last run has written, to the octet or as a document with all its white space.
expect_output() { diff "$output" <(printf "$1") || fail 'the output differs'; }
expect_errors() { diff "$errors" <(printf "$1") || fail 'the errors differ'; }
expect_document() { "$tavrin" diff "$output" "$1" || fail "the output differs from $1"; }

expect_refusals() {
  local number=0 document
  for document in '' '<a>' '<a></b>' '<a/><b/>' '<a b="1" b="2"/>' '<a>&b;</a>' $'<a>\n<b></a>'; do
    printf %s "$document" >"$folder/refused"
    expect 1 "$folder/refused" "$@"
    [[ $(cat "$errors") =~ ^[1-9][0-9]*:[1-9][0-9]*:\ .+ ]] || fail "$document: $(cat "$errors")"
    (($(wc -l <"$errors") == 1)) || fail "$document: $(cat "$errors")"
  done
  expect 1 / "$@"
}

# A device that takes nothing.
expect_full() {
  local status=0
  timeout 20 "$program" "${@:2}" <"$1" >/dev/full 2>"$errors" || status=$?
  ((status == 1)) || fail "a full device: the exit status is $status, not 1"
  expect_errors 'The output cannot be written\n'
}

case $task in
  count)
    {
      echo '<r xmlns="urn:r">'
      for ((i = 0; i < 2500; ++i)); do echo "<a n='$i'>&lt;a></a>"; done
      echo '</r>'
    } >"$folder/long.xml"
    expect 0 "$folder/long.xml"
    expect_output '2501 elements\n'
    expect_errors '1000 elements\n2000 elements\n'
    expect 0 dense.xml
    expect_output '7 elements\n'
    expect_errors ''
    expect_refusals
    expect_full dense.xml
    ;;
  pretty)
    for document in dense.xml indented.xml; do
      expect 0 "$document"
      expect_errors ''
      expect_document indented.xml
    done
    expect_refusals
    expect_full dense.xml
    ;;
  rename)
    expect 0 dense.xml
    expect_errors ''
    expect_document renamed.xml
    expect 0 renamed.xml
    expect_document renamed.xml
    expect_refusals
    expect_full dense.xml
    ;;
  exchange)
    types=('')
    if [[ $2 == tavrin ]]; then types+=(XML10 X891); fi
    for type in "${types[@]}"; do
      expect 0 /dev/null FISH $type
      expect_output 'FISH costs 5.5\n'
      expect 0 /dev/null CHIPS $type
      expect_output 'CHIPS costs 2.25\n'
      expect 1 /dev/null 'a<b & "c"' $type
      expect_output ''
      expect_errors 'No price of a<b & "c"\n'
    done
    ;;
  floats)
    expect 0 /dev/null
    expect_output '1000 floats came back\n'
    ;;
  write)
    expect 0 /dev/null svg 'Fish & chips'
    expect_document picture.svg
    expect 0 /dev/null soap 'F&SH'
    expect_document message.xml
    expect_full /dev/null svg 'Fish & chips'
    expect_full /dev/null soap FISH
    ;;
  *) fail "there is no task $task" ;;
esac
exit "$failures"
