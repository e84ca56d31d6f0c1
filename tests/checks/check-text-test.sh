#!/bin/sh
# SPDX-License-Identifier: MIT
# The text check must pass a clean tree, and must name the file in a tree where one line is wrong.
# Usage: check-text-test.sh CHECK    the script to test
set -eu
check=$1
tree=$(mktemp -d)
log=$(mktemp)
trap 'rm -rf "$tree" "$log"' EXIT
failed=0

clean_tree() {
  mkdir -p "$tree/source" "$tree/scripts" "$tree/build"
  printf '// SPDX-License-Identifier: MIT\nint a;\n' >"$tree/source/A.cpp"
  printf 'build   ninja-build\n' >"$tree/scripts/packages"
  printf 'The table: `ninja-build`.\n' >"$tree/CONTRIBUTING.md"
  # White space fills a description, and its end is its own.
  printf '<!-- text -->   \n\t<a/>\r\n</a>' >"$tree/source/A.xml"
  # What a build leaves behind is not looked at.
  printf 'no line end' >"$tree/build/B.cpp"
}

# refuses FILE WHAT: the tree as it is now must be refused, with FILE named.
refuses() {
  if "$check" "$tree" >"$log" 2>&1; then
    echo "FAILED: passed $2"
    failed=1
  elif ! grep -q "^$1:" "$log"; then
    echo "FAILED: refused $2 without naming $1:"
    cat "$log"
    failed=1
  fi
}

# refuses_line LINE: with LINE at its end, where \t and \r count, source/A.cpp must be refused.
refuses_line() {
  clean_tree
  printf '%b\n' "$1" >>"$tree/source/A.cpp"
  refuses source/A.cpp "the line $1"
}

# refuses_words WORDS: neither a source file nor a description may hold them.
# The words come in halves, so that this file does not hold them.
refuses_words() {
  refuses_line "// $1"
  clean_tree
  printf '<!-- %s -->\n' "$1" >>"$tree/source/A.xml"
  refuses source/A.xml "$1 in a description"
}

clean_tree
if ! "$check" "$tree" >"$log" 2>&1; then
  echo "FAILED: a clean tree is refused:"
  cat "$log"
  failed=1
fi

refuses_words "as $(printf '%s' th)e spec says"
refuses_words "$(printf '%s' Th)e specification says"
refuses_words "as $(printf '%s' thi)s specification says"
refuses_words "see $(printf '%s' Par)t 4.3"
refuses_words "see $(printf '%s' par)ts 1.2 and 4"
refuses_words "see $(printf '%s' spe)c.md"
refuses_words "in $(printf '%s' /ho)me/someone/tree"
refuses_words "in $(printf '%s' /ro)ot/tree"
refuses_words "$(printf '%s' TO)DO"
refuses_words "$(printf '%s' GTEST)_SKIP();"
refuses_line 'int b; '
refuses_line '\tint b;'
refuses_line 'int b;\r'

clean_tree
printf 'int b;' >>"$tree/source/A.cpp"
refuses source/A.cpp "a file without a line end at its end"

clean_tree
printf 'int a;\n' >"$tree/source/A.cpp"
refuses source/A.cpp "a source file without an SPDX line"

clean_tree
printf 'See [this](docs/none.md).\n' >>"$tree/CONTRIBUTING.md"
refuses CONTRIBUTING.md "a link to a file that is not there"

clean_tree
printf 'build   cmake\n' >>"$tree/scripts/packages"
refuses scripts/packages "a package without a reason"

# A file that cannot be searched: its name makes two in a list.
clean_tree
printf 'int a;\n' >"$tree/source/A
B"
if "$check" "$tree" >"$log" 2>&1; then
  echo "FAILED: passed a tree that could not be searched"
  failed=1
elif ! grep -q '^the search for .* failed$' "$log"; then
  echo "FAILED: refused a tree that could not be searched without saying so:"
  cat "$log"
  failed=1
fi
exit $failed
