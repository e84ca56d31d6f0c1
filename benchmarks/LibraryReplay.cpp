// SPDX-License-Identifier: MIT
#include "LibraryReplay.h"

#include <map>

namespace Benchmarks {

using Scripted::Call;
using Scripted::Op;
using Scripted::Script;

namespace {

void IgnoreError(const char *, GRB_STATUS, const char *) {}

}  // namespace

CLibraryReplay::CLibraryReplay(const std::function<void()> &action) {
  Script().ClearCalls();
  Script().SetQuiet(false);
  action();
  Script().SetQuiet(true);
  std::map<GRB_HANDLE, size_t> slots;
  for (const Call &call : Script().Calls()) {
    if (call.op == Op::Create) {
      slots[call.handle] = m_Handles.size();
      m_Handles.push_back(0);
    }
    const auto slot = slots.find(call.handle);
    if (slot != slots.end()) {
      m_Steps.push_back(
          {call.op, slot->second, call.code, call.address, call.size, call.timeout, call.value.value_or(0)});
    }
  }
  Script().ClearCalls();
}

void CLibraryReplay::Run() const {
  for (const Step &step : m_Steps) {
    GRB_HANDLE &handle = m_Handles[step.slot];
    uint64_t value = step.value;
    uint32_t address = step.address;
    uint32_t size = step.size;
    uint8_t bytes[4096];
    switch (step.op) {
      case Op::Create:
        GRB_Create(&handle, IgnoreError);
        break;
      case Op::Destroy:
        GRB_Destroy(&handle);
        break;
      case Op::Open:
        GRB_Open(handle);
        break;
      case Op::Close:
        GRB_Close(&handle);
        break;
      case Op::ParameterSet:
        GRB_ParameterSet(handle, step.code, &value);
        break;
      case Op::ParameterGet:
        GRB_ParameterGet(handle, step.code, &value);
        break;
      case Op::ControlRead:
        GRB_ControlRead(handle, step.code, &address, bytes, &size, step.timeout);
        break;
      default:
        break;
    }
  }
}

}  // namespace Benchmarks
