// SPDX-License-Identifier: MIT
#include "Acquisition.h"

#include <exception>

namespace Lumivex::Consumer {

CAcquisition::CAcquisition(const CDataStream &stream, uint64_t frames) : m_Stream(stream), m_Camera(stream.Device()) {
  const CProducer &producer = m_Stream.Producer();
  producer.Call(producer.Api().DSStartAcquisition, m_Stream.Handle(), GenTL::ACQ_START_FLAGS_DEFAULT, frames);
  m_bRunning = true;
  m_bCameraStarted = m_Camera.Start();
}

CAcquisition::~CAcquisition() {
  try {
    Stop();
  } catch (const std::exception &) {
    // Whatever ended the run early is the error to report.
  }
}

void CAcquisition::Stop() {
  if (!m_bRunning) {
    return;
  }
  m_bRunning = false;
  if (m_bCameraStarted) {
    m_Camera.Stop();
  }
  const CProducer &producer = m_Stream.Producer();
  producer.Call(producer.Api().DSStopAcquisition, m_Stream.Handle(), GenTL::ACQ_STOP_FLAGS_DEFAULT);
}

}  // namespace Lumivex::Consumer
