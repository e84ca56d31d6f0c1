# SPDX-License-Identifier: MIT
# lumivex_warnings: the warnings under which all of our own code is built.
add_library(lumivex_warnings INTERFACE)
target_compile_options(
  lumivex_warnings INTERFACE $<$<COMPILE_LANGUAGE:C,CXX>:-Wall -Wextra -Wpedantic -Wshadow -Wconversion>
                             $<$<AND:$<BOOL:${LUMIVEX_WERROR}>,$<COMPILE_LANGUAGE:C,CXX>>:-Werror>)
