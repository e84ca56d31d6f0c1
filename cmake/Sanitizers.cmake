# SPDX-License-Identifier: MIT
# LUMIVEX_SANITIZE instruments every target of the build, ours and the tests alike.
if(LUMIVEX_SANITIZE STREQUAL "address")
  set(lumivex_sanitize_flags -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
elseif(LUMIVEX_SANITIZE STREQUAL "thread")
  set(lumivex_sanitize_flags -fsanitize=thread -fno-omit-frame-pointer)
elseif(NOT LUMIVEX_SANITIZE STREQUAL "")
  message(FATAL_ERROR "LUMIVEX_SANITIZE knows address and thread, not ${LUMIVEX_SANITIZE}")
endif()
if(lumivex_sanitize_flags)
  add_compile_options("$<$<COMPILE_LANGUAGE:C,CXX>:${lumivex_sanitize_flags}>")
  add_link_options(${lumivex_sanitize_flags})
endif()
