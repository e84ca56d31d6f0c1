// SPDX-License-Identifier: MIT
// The eleven operations. Each is one statement within the frame that turns failures into a status and a hook call.
#include <cstdio>
#include <exception>
#include <memory>

#include "SimError.h"
#include "SimHandle.h"
#include "SimLibrary.h"
#include "grblx64.h"

namespace grbsim {
namespace {

// The hook is entered when nothing of the library is locked any more.
template <class Body>
GRB_STATUS Framed(GRB_ERROR_HOOK hook, const char *function, Body &&body) noexcept {
  const auto report = [&](GRB_STATUS status, const char *text) {
    if (hook != nullptr) {
      hook(function, status, text);
    }
    return status;
  };
  try {
    body();
    return GRB_OK;
  } catch (const CSimError &error) {
    return report(error.Status(), error.what());
  } catch (const std::exception &error) {
    return report(kStatusInternal, error.what());
  }
}

template <class Body>
GRB_STATUS OnHandle(GRB_HANDLE value, const char *function, Body &&body) noexcept {
  const std::shared_ptr<CSimHandle> handle = CSimLibrary::Instance().Handles().Find(value);
  // A value that is no handle has no hook to be told.
  return handle == nullptr ? kStatusInvalidHandle : Framed(handle->Hook(), function, [&] { body(*handle); });
}

void RequireAnswer(uint32_t timeout, uint32_t *moved) {
  // A simulated device answers at once, which is late only for those who do not wait at all.
  if (timeout == 0) {
    RequirePointer(moved, "size");
    *moved = 0;
    throw CSimError(GRB_WARNING_TIMEOUT, "No answer within 0 ms.");
  }
}

}  // namespace
}  // namespace grbsim

GRB_API GRB_STATUS GRB_Create(GRB_HANDLE *handle, GRB_ERROR_HOOK hook) {
  return grbsim::Framed(hook, "GRB_Create", [&] {
    grbsim::RequirePointer(handle, "handle");
    *handle = grbsim::CSimLibrary::Instance().Handles().Add(hook);
  });
}

GRB_API GRB_STATUS GRB_Destroy(GRB_HANDLE *handle) {
  if (handle == nullptr) {
    return grbsim::kStatusInvalidArgument;
  }
  const std::shared_ptr<grbsim::CSimHandle> removed = grbsim::CSimLibrary::Instance().Handles().Remove(*handle);
  return removed == nullptr ? grbsim::kStatusInvalidHandle
                            : grbsim::Framed(removed->Hook(), "GRB_Destroy", [&] { removed->Close(); });
}

GRB_API GRB_STATUS GRB_Open(GRB_HANDLE handle) {
  return grbsim::OnHandle(handle, "GRB_Open", [](grbsim::CSimHandle &target) { target.Open(); });
}

GRB_API GRB_STATUS GRB_Close(GRB_HANDLE *handle) {
  return handle == nullptr ? grbsim::kStatusInvalidArgument
                           : grbsim::OnHandle(*handle, "GRB_Close", [](grbsim::CSimHandle &target) { target.Close(); });
}

GRB_API GRB_STATUS GRB_ParameterSet(GRB_HANDLE handle, uint32_t identifier, void *value) {
  return grbsim::OnHandle(handle, "GRB_ParameterSet",
                          [&](grbsim::CSimHandle &target) { target.SetParameter(identifier, value); });
}

GRB_API GRB_STATUS GRB_ParameterGet(GRB_HANDLE handle, uint32_t identifier, void *value) {
  return grbsim::OnHandle(handle, "GRB_ParameterGet",
                          [&](grbsim::CSimHandle &target) { target.GetParameter(identifier, value); });
}

GRB_API GRB_STATUS GRB_Action(GRB_HANDLE handle, uint32_t action, uint32_t subAction, void *argument) {
  return grbsim::OnHandle(handle, "GRB_Action",
                          [&](grbsim::CSimHandle &target) { target.Action(action, subAction, argument); });
}

GRB_API GRB_STATUS GRB_StreamRead(GRB_HANDLE handle, uint32_t operation, void *argument) {
  return grbsim::OnHandle(handle, "GRB_StreamRead",
                          [&](grbsim::CSimHandle &target) { target.Stream(operation, argument); });
}

GRB_API GRB_STATUS GRB_ControlRead(GRB_HANDLE handle, uint32_t port, void *config, uint8_t *buffer, uint32_t *size,
                                   uint32_t timeout) {
  return grbsim::OnHandle(handle, "GRB_ControlRead", [&](grbsim::CSimHandle &target) {
    grbsim::RequireAnswer(timeout, size);
    target.ControlRead(port, config, buffer, size);
  });
}

GRB_API GRB_STATUS GRB_ControlWrite(GRB_HANDLE handle, uint32_t port, void *config, uint8_t *buffer, uint32_t *size,
                                    uint32_t timeout) {
  return grbsim::OnHandle(handle, "GRB_ControlWrite", [&](grbsim::CSimHandle &target) {
    grbsim::RequireAnswer(timeout, size);
    target.ControlWrite(port, config, buffer, size);
  });
}

GRB_API void GRB_ErrHandlerDefault(const char *function, GRB_STATUS status, const char *description) {
  std::fprintf(stderr, "grblx64: %s: %s (status 0x%08X)\n", function == nullptr ? "unknown function" : function,
               description == nullptr ? "no description" : description, status);
}
