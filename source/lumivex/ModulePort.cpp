// SPDX-License-Identifier: MIT
#include "ModulePort.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

#include "Catalog.h"

namespace Lumivex::Consumer {
namespace {

// A description of more bytes than this is a wrong answer, not a description.
constexpr uint64_t kMostDescriptionBytes = uint64_t{64} << 20U;

std::string ReadFile(const std::string &name, const ModuleRow &module) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(name, error);
  if (!error && size > kMostDescriptionBytes) {
    error = std::make_error_code(std::errc::file_too_large);
  }
  std::string bytes(error ? 0 : static_cast<std::size_t>(size), '\0');
  if (!error) {
    errno = 0;
    std::ifstream file(name, std::ios::binary);
    if (!file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()))) {
      error = std::error_code(errno != 0 ? errno : EIO, std::generic_category());
    }
  }
  if (error) {
    // Most often it is a setting of the Producer that leads to a file on disk for the camera.
    throw CCommandError(
        ExitCode::GenTL,
        std::string(module.text) + "'s description, the file '" + name + "', cannot be read: " + error.message() +
            (module.module == Module::Camera ? "; a setting of the Producer, such as DebugCameraURL, may name it"
                                             : ""));
  }
  return bytes;
}

}  // namespace

const ModuleRow &RowOf(Module module) {
  return *std::find_if(std::begin(kModules), std::end(kModules),
                       [&](const ModuleRow &row) { return row.module == module; });
}

CModulePort::CModulePort(const CCatalog &catalog, Module module, const std::string &wish, PortUse use)
    : m_Module(module) {
  if (module == Module::System) {
    OpenSystem(catalog, wish);
    return;
  }
  if (module == Module::Interface) {
    OpenInterface(catalog, wish);
    return;
  }
  const std::vector<CameraEntry> cameras = catalog.Cameras();
  const CameraEntry &camera =
      CCatalog::Select(cameras, wish, use == PortUse::Reading ? CameraNeed::Any : CameraNeed::Free);
  m_CameraName = CCatalog::FullName(camera);
  OpenDevice(camera, use);
  m_pProducer = &m_pDevice->Producer();
  if (module == Module::Device) {
    m_Handle = m_pDevice->Handle();
  } else if (module == Module::Camera) {
    m_Handle = m_pDevice->RemotePort();
  } else {
    OpenStream();
  }
}

CModulePort::CModulePort(std::shared_ptr<const CDevice> pDevice)
    : m_Module(Module::Device),
      m_pDevice(std::move(pDevice)),
      m_pProducer(&m_pDevice->Producer()),
      m_Handle(m_pDevice->Handle()) {}

void CModulePort::OpenSystem(const CCatalog &catalog, const std::string &wish) {
  if (wish.empty()) {
    m_pSystem = catalog.Producers().front().pSystem;
  } else {
    const std::vector<CameraEntry> cameras = catalog.Cameras();
    m_pSystem = CCatalog::Select(cameras, wish, CameraNeed::Any).pInterface->System();
  }
  m_pProducer = &m_pSystem->Producer();
  m_Handle = m_pSystem->Handle();
}

void CModulePort::OpenInterface(const CCatalog &catalog, const std::string &wish) {
  if (wish.empty()) {
    for (const ProducerEntry &producer : catalog.Producers()) {
      if (!producer.boards.empty()) {
        m_pInterface = producer.boards.front().pInterface;
        break;
      }
    }
    if (m_pInterface == nullptr) {
      throw CCommandError(ExitCode::NoDevice, "no board found");
    }
  } else {
    const std::vector<CameraEntry> cameras = catalog.Cameras();
    m_pInterface = CCatalog::Select(cameras, wish, CameraNeed::Any).pInterface;
  }
  m_pProducer = &m_pInterface->Producer();
  m_Handle = m_pInterface->Handle();
}

void CModulePort::OpenDevice(const CameraEntry &camera, PortUse use) {
  const auto open = [&](GenTL::DEVICE_ACCESS_FLAGS access) {
    m_pDevice = std::make_shared<const CDevice>(camera.pInterface, camera.id, access);
  };
  if (use == PortUse::Writing) {
    open(GenTL::DEVICE_ACCESS_CONTROL);
    return;
  }
  // Many features exist only for who has control, so it is wanted for reading too.
  if (CCatalog::IsFree(camera)) {
    try {
      open(GenTL::DEVICE_ACCESS_CONTROL);
      return;
    } catch (const CCommandError &error) {
      if (error.Code() != ExitCode::DeviceBusy) {
        throw;
      }
    }
  }
  open(GenTL::DEVICE_ACCESS_READONLY);
  m_Reduced = true;
}

void CModulePort::OpenStream() {
  const std::vector<std::string> streams = m_pDevice->StreamIds();
  if (streams.empty() && m_Reduced) {
    throw CCommandError(
        ExitCode::DeviceBusy,
        "camera " + m_CameraName + " is busy: another program has opened it, and only that one can open its stream");
  }
  if (streams.empty()) {
    throw CCommandError(ExitCode::GenTL, "the camera has no data stream");
  }
  m_pStream = std::make_shared<const CDataStream>(m_pDevice, streams.front());
  m_Handle = m_pStream->Handle();
}

void CModulePort::Read(uint64_t address, void *pBuffer, std::size_t size) const {
  // A Producer may end a text's register with the text.
  std::memset(pBuffer, 0, size);
  std::size_t got = size;
  Producer().Call(Producer().Api().GCReadPort, m_Handle, address, pBuffer, &got);
}

void CModulePort::Write(uint64_t address, const void *pBuffer, std::size_t size) const {
  std::size_t done = size;
  Producer().Call(Producer().Api().GCWritePort, m_Handle, address, pBuffer, &done);
  if (done != size) {
    throw CCommandError(ExitCode::GenTL,
                        "GCWritePort took " + std::to_string(done) + " bytes of " + std::to_string(size));
  }
}

bool CModulePort::IsBigEndian() const {
  return Producer().TryQueryNumber(Producer().Api().GCGetPortInfo, m_Handle, GenTL::PORT_INFO_BIG_ENDIAN).value_or(0) !=
         0;
}

PortFile CModulePort::Description() const {
  uint32_t count = 0;
  Producer().Call(Producer().Api().GCGetNumPortURLs, m_Handle, &count);
  std::string refused;
  for (uint32_t i = 0; i < count; ++i) {
    const std::string text = Producer().QueryText(Producer().Api().GCGetPortURLInfo, m_Handle, i, GenTL::URL_INFO_URL);
    const std::optional<PortUrl> url = ParsePortUrl(text);
    if (!url || url->size > kMostDescriptionBytes) {
      refused = text;
      continue;
    }
    if (!url->local) {
      return {url->name, ReadFile(url->name, RowOf(m_Module))};
    }
    std::string bytes(static_cast<std::size_t>(url->size), '\0');
    Read(url->address, bytes.data(), bytes.size());
    return {url->name, bytes};
  }
  throw CCommandError(ExitCode::GenTL, count == 0 ? "the module has no description of its features"
                                                  : "the module's description lies at an unknown place: " + refused);
}

}  // namespace Lumivex::Consumer
