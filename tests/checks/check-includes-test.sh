#!/bin/sh
# SPDX-License-Identifier: MIT
# The include check must pass a clean tree, and must name the file in a tree where one line crosses a room.
# Usage: check-includes-test.sh CHECK    the script to test
set -eu
check=$1
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
failed=0

clean_tree() {
  rm -rf "$tree/source"
  for room in gentl grblx64 tllumivex grbsim lumivex; do
    mkdir -p "$tree/source/$room"
  done
  echo '#include <stdint.h>' >"$tree/source/gentl/GenTL.h"
  echo '#include <stdint.h>' >"$tree/source/grblx64/grblx64.h"
  printf '#include <boost/thread/mutex.hpp>\n#include <cstring>\n\n#include "GenTL.h"\n#include "grblx64.h"\n' \
    >"$tree/source/tllumivex/TL.h"
  printf '#include "TL.h"  // own\n' >"$tree/source/tllumivex/TL.cpp"
  printf '#include <dlfcn.h>\n#include <sys/stat.h>\n' >"$tree/source/tllumivex/Platform_Linux.cpp"
  printf '#include <fcntl.h>\n#ifdef _WIN32\n#endif\n' >"$tree/source/grbsim/SimPlatform_Linux.cpp"
  printf '#include <thread>\n#include "grblx64.h"\n' >"$tree/source/grbsim/Board.h"
  printf '#include <png.h>\n#include <CLI/CLI.hpp>\n#include "GenTL.h"\n' \
    >"$tree/source/lumivex/Main.cpp"
}

clean_tree
if ! "$check" "$tree" >"$tree/log" 2>&1; then
  echo "FAILED: a clean tree is refused:"
  cat "$tree/log"
  failed=1
fi

# refuses FILE LINE: with LINE at its end, FILE must be refused by name.
refuses() {
  clean_tree
  printf '%s\n' "$2" >>"$tree/source/$1"
  if "$check" "$tree" >"$tree/log" 2>&1; then
    echo "FAILED: passed $2 in $1"
    failed=1
  elif ! grep -q "^source/$1:" "$tree/log"; then
    echo "FAILED: refused $2 without naming $1:"
    cat "$tree/log"
    failed=1
  fi
}

refuses lumivex/Main.cpp '#include "grblx64.h"'
refuses lumivex/Main.cpp '#include <grblx64.h>'
refuses lumivex/Main.cpp '#include "TL.h"'
refuses lumivex/Main.cpp '#include "../tllumivex/TL.h"'
refuses lumivex/Main.cpp '#include "tllumivex/TL.h"'
refuses lumivex/Main.cpp '#include <dlfcn.h>'
refuses lumivex/Main.cpp '#ifdef _WIN32'
refuses lumivex/Main.cpp '#include <boost/thread/mutex.hpp>'
refuses grbsim/Board.h '#include "GenTL.h"'
refuses grbsim/Board.h '  #  include "TL.h"'
refuses grbsim/Board.h '#include <unistd.h>'
refuses grbsim/Board.h '#ifdef _WIN32'
refuses tllumivex/TL.cpp '#include "Board.h"'
refuses tllumivex/TL.cpp '#include "../grbsim/Board.h"'
refuses tllumivex/TL.cpp '#include <dlfcn.h>'
refuses tllumivex/TL.cpp '#include <sys/stat.h>'
refuses tllumivex/TL.cpp '#include <windows.h>'
refuses tllumivex/TL.cpp '#include <png.h>'
refuses tllumivex/TL.cpp '#include SOME_HEADER'
refuses tllumivex/TL.cpp '#if defined(__linux__)'
refuses tllumivex/Platform_Linux.cpp '#include "Board.h"'
refuses gentl/GenTL.h '#include "grblx64.h"'
refuses grblx64/grblx64.h '#include "GenTL.h"'

clean_tree
mkdir "$tree/source/cellar"
if "$check" "$tree" >"$tree/log" 2>&1; then
  echo "FAILED: passed a room that has no rule"
  failed=1
fi

rm -rf "$tree/source"
mkdir "$tree/source"
if "$check" "$tree" >"$tree/log" 2>&1; then
  echo "FAILED: passed a tree without rooms"
  failed=1
fi
exit $failed
