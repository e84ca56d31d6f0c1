// SPDX-License-Identifier: MIT
#include "FailingRequest.h"

#include <cstdlib>
#include <new>

namespace {

thread_local unsigned t_nFail = 0;

void *Request(std::size_t size) {
  if (t_nFail != 0) {
    --t_nFail;
    throw std::bad_alloc();
  }
  void *const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}

}  // namespace

void *operator new(std::size_t size) { return Request(size); }
void *operator new[](std::size_t size) { return Request(size); }
void operator delete(void *memory) noexcept { std::free(memory); }
void operator delete[](void *memory) noexcept { std::free(memory); }
void operator delete(void *memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void *memory, std::size_t) noexcept { std::free(memory); }

namespace StreamTests {

CFailingRequest::CFailingRequest(unsigned requests) { t_nFail = requests; }
CFailingRequest::~CFailingRequest() { t_nFail = 0; }
bool CFailingRequest::Happened() const { return t_nFail == 0; }

}  // namespace StreamTests
