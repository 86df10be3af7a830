#!/usr/bin/env bash
# Lists files that are named as XML documents are, and are no larger than a megabyte, each with an
# octet 0 behind: list-documents.sh MOST DIR...
#
# There are no more than MOST, from all folders alike; in front stand those of the packages xkb-data
# and shared-mime-info that are below the folders.
set -euo pipefail
export LC_ALL=C

most=$1
files=()
while IFS= read -r -d '' file; do
  files+=("$file")
done < <(find "${@:2}" -type f -size -1024k -regextype posix-extended \
  -regex '.*\.(xml|xsl|xslt|xsd|rng|svg|policy|ui|xhtml)' -print0 | sort --zero-terminated --unique)

chosen=()
for file in "${files[@]}"; do
  [[ $file != */X11/xkb/* && $file != */mime/packages/* ]] || chosen+=("$file")
done
step=$(((${#files[@]} + most - 1) / most))
for ((i = 0; i < ${#files[@]}; i += step)); do
  [[ ${files[i]} == */X11/xkb/* || ${files[i]} == */mime/packages/* ]] || chosen+=("${files[i]}")
done
((${#chosen[@]} == 0)) || printf '%s\0' "${chosen[@]:0:most}"
