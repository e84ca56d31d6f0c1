// SPDX-License-Identifier: MIT
#include "System.h"

#include <utility>

namespace Lumivex::Consumer {
namespace {

constexpr uint64_t kDiscoveryMilliseconds = 1000;

}  // namespace

CSystem::CSystem(std::shared_ptr<const CProducer> pProducer) : m_pProducer(std::move(pProducer)) {
  m_pProducer->Call(m_pProducer->Api().TLOpen, &m_Handle);
}

CSystem::~CSystem() { m_pProducer->Api().TLClose.address(m_Handle); }

std::vector<std::string> CSystem::FindInterfaces() const {
  const FunctionTable &api = m_pProducer->Api();
  m_pProducer->Call(api.TLUpdateInterfaceList, m_Handle, nullptr, kDiscoveryMilliseconds);
  uint32_t count = 0;
  m_pProducer->Call(api.TLGetNumInterfaces, m_Handle, &count);
  std::vector<std::string> ids;
  for (uint32_t i = 0; i < count; ++i) {
    ids.push_back(m_pProducer->QueryId(api.TLGetInterfaceID, m_Handle, i));
  }
  return ids;
}

}  // namespace Lumivex::Consumer
