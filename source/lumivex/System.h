// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Producer.h"

namespace Lumivex::Consumer {

/// The open system of a Producer, from TLOpen to TLClose.
///
/// Ownership: shared by its interfaces; holds its Producer, so that modules close from below and the library last.
/// Threads: one; no locks. A Producer has one system, so it is opened once per program.
/// Throws CGenTLError.
class CSystem {
 public:
  explicit CSystem(std::shared_ptr<const CProducer> pProducer);
  CSystem(const CSystem &) = delete;
  CSystem &operator=(const CSystem &) = delete;
  ~CSystem();

  const CProducer &Producer() const noexcept { return *m_pProducer; }
  GenTL::TL_HANDLE Handle() const noexcept { return m_Handle; }

  /// Looks for boards; their ids in the Producer's order.
  std::vector<std::string> FindInterfaces() const;

 private:
  const std::shared_ptr<const CProducer> m_pProducer;
  GenTL::TL_HANDLE m_Handle = GENTL_INVALID_HANDLE;
};

}  // namespace Lumivex::Consumer
