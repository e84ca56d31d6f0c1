#!/bin/sh
# SPDX-License-Identifier: MIT
# The filling of the descriptions: it brings back what an edit of the white space has changed, and refuses to touch a
# file whose text it would lose or cannot fit in.
# Usage: fill-xml-test.sh SCRIPT XML-FOLDER    the script to test, and the descriptions as they have to be
set -eu
script=$1
good=$2
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
xml=$tree/source/tllumivex/xml
end_tag='</RegisterDescription>'
failed=0

mkdir -p "$tree/scripts" "$xml"
cp "$script" "$tree/scripts/fill-xml"

clean_tree() {
  cp "$good"/*.xml "$xml"
}

# fails WHAT: tells what went wrong, with the script's words.
fails() {
  echo "FAILED: $1"
  cat "$tree/log"
  failed=1
}

# runs RESULT ARGUMENT...: the script has to end with RESULT.
runs() {
  expected=$1
  shift
  result=0
  bash "$tree/scripts/fill-xml" "$@" >"$tree/log" 2>&1 || result=$?
  [ "$result" -eq "$expected" ] || fails "$what: ended with $result, not with $expected"
}

# says TEXT: it has to be among the script's words.
says() {
  grep -qF "$1" "$tree/log" || fails "$what: does not say: $1"
}

# mends NAME WHAT: the file as it is now is told by --check, which leaves it alone, and made as it was without it.
mends() {
  what=$2
  cp "$xml/$1" "$tree/edited"
  runs 1 --check
  says "$1: run scripts/fill-xml"
  cmp -s "$xml/$1" "$tree/edited" || fails "$what: --check has changed the file"
  runs 0
  says "$1: filled"
  cmp -s "$xml/$1" "$good/$1" || fails "$what: the file is not as it was"
  runs 0 --check
}

# refuses NAME WORDS WHAT: the file as it is now is refused with these words, and left alone.
refuses() {
  what=$3
  cp "$xml/$1" "$tree/edited"
  for argument in --check ''; do
    runs 1 $argument
    says "$1: "
    says "$2"
    cmp -s "$xml/$1" "$tree/edited" || fails "$what: the file has been changed"
  done
}

# A file that has a size, and one that has none.
for name in LumivexTLDevice.xml LumivexTLDataStream.xml; do
  clean_tree
  sed -i "s|^$end_tag|   \n\n$end_tag|" "$xml/$name"
  mends $name "white space ahead of the end tag of $name"
  clean_tree
  printf '\n  \n' >>"$xml/$name"
  mends $name "white space behind the end tag of $name"
  clean_tree
  sed -i 's|^  *$||' "$xml/$name"
  printf ' ' >>"$xml/$name"
  mends $name "lines of blanks made empty in $name"
done

# An edit of the text takes its bytes from the filling.
clean_tree
what="a longer text"
sed -i "s|^$end_tag|<!-- one more line -->\n$end_tag|" "$xml/LumivexTLSystem.xml"
runs 0
says 'LumivexTLSystem.xml: filled'
[ "$(wc -c <"$xml/LumivexTLSystem.xml")" -eq 9404 ] || fails "$what: the size is not 9404"
grep -q '<!-- one more line -->' "$xml/LumivexTLSystem.xml" || fails "$what: the line is gone"

clean_tree
what="a text that is too long"
{
  grep -v "^$end_tag" "$good/LumivexTLDevice.xml"
  printf '<!-- %0150000d -->\n%s\n' 0 "$end_tag"
} >"$xml/LumivexTLDevice.xml"
refuses LumivexTLDevice.xml 'bytes too long for 150740' "$what"

# The filling makes up for any text up to the last byte, and for no byte more.
clean_tree
what="a text that fits to the byte"
sed -i 's|[[:blank:]]*$||' "$xml/LumivexTLInterface.xml"
text=$(grep -v "^$end_tag" "$xml/LumivexTLInterface.xml")
printf '%s\n' "$text" >"$tree/text"
room=$((7300 - $(wc -c <"$tree/text") - ${#end_tag} - 1))
printf '%s\n<!--%s-->\n%s\n' "$text" "$(printf "%0$((room - 8))d" 0)" "$end_tag" >"$xml/LumivexTLInterface.xml"
runs 0 --check
printf '%s\n<!--%s-->\n%s\n' "$text" "$(printf "%0$((room - 7))d" 0)" "$end_tag" >"$xml/LumivexTLInterface.xml"
refuses LumivexTLInterface.xml 'the text is 1 bytes too long for 7300' "a text that is one byte too long"

for name in LumivexTLSystem.xml LumivexTLBuffer.xml; do
  clean_tree
  grep -v "$end_tag" "$good/$name" >"$xml/$name"
  refuses $name 'has to stand alone' "no end tag in $name"
  clean_tree
  sed -i "s|^$end_tag|<Port Name=\"Lost\"/>$end_tag|" "$xml/$name"
  refuses $name 'has to stand alone' "a node in the line of the end tag of $name"
  clean_tree
  sed -i "s|^$end_tag|$end_tag<!-- lost -->|" "$xml/$name"
  refuses $name 'has to stand alone' "a comment in the line of the end tag of $name"
  clean_tree
  printf '<!-- lost -->\n' >>"$xml/$name"
  refuses $name 'has to stand alone' "a comment behind the end tag of $name"
  clean_tree
  sed -i "2s|^|<!-- up to $end_tag -->\n|" "$xml/$name"
  refuses $name 'has to stand alone' "a comment that names the end tag in $name"
  clean_tree
  sed -i "2s|^|<!--\n$end_tag\n-->\n|" "$xml/$name"
  refuses $name 'has to stand alone' "an end tag of its own line in a comment of $name"
done

# One file that is refused keeps no other from being filled.
clean_tree
what="a wrong file ahead of one to fill"
printf '<!-- lost -->\n' >>"$xml/LumivexTLSystem.xml"
printf '\n' >>"$xml/LumivexTLDevice.xml"
runs 1
says 'LumivexTLDevice.xml: filled'
cmp -s "$xml/LumivexTLDevice.xml" "$good/LumivexTLDevice.xml" || fails "$what: it is not filled"

clean_tree
what="an argument that it does not know"
runs 2 --fill
says 'usage: '
exit $failed
