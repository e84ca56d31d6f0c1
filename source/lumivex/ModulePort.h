// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "DataStream.h"
#include "PortUrl.h"

namespace Lumivex::Consumer {

struct CameraEntry;
class CCatalog;

/// The modules that have registers and a description of them.
enum class Module { System, Interface, Device, Stream, Camera };

struct ModuleRow {
  Module module;
  const char *name;  ///< On the command line.
  const char *text;  ///< In a sentence.
};

constexpr ModuleRow kModules[] = {
    {Module::System, "system", "the system module"},
    {Module::Interface, "interface", "the interface module (the board)"},
    {Module::Device, "device", "the device module (the grabber)"},
    {Module::Stream, "stream", "the stream module"},
    {Module::Camera, "camera", "the camera"},
};

/// The row of a module.
const ModuleRow &RowOf(Module module);

/// What the port of a module is opened for.
enum class PortUse { Reading, Writing };

/// The port of an open module: its registers, and the description of them that it carries.
///
/// Ownership: holds the module, and with it all modules above.
/// Threads: one. Throws CGenTLError for what the Producer refuses, CCommandError(DeviceBusy) for writing to a camera
/// that another program has. For reading, such a camera is opened without control, and IsReduced() tells so.
class CModulePort {
 public:
  /// Opens the module that the user means; wish as in CCatalog::Select. Without a wish, system and interface need no
  /// camera.
  CModulePort(const CCatalog &catalog, Module module, const std::string &wish, PortUse use);

  /// The registers of a device that is open for control.
  explicit CModulePort(std::shared_ptr<const CDevice> pDevice);

  Module Kind() const noexcept { return m_Module; }

  /// "'board/camera'" of the camera that was chosen; empty where none was.
  const std::string &CameraName() const noexcept { return m_CameraName; }

  /// What the Producer leaves out at the end is zero.
  void Read(uint64_t address, void *pBuffer, std::size_t size) const;
  void Write(uint64_t address, const void *pBuffer, std::size_t size) const;

  /// Whether numbers stand in the registers with their highest byte first.
  bool IsBigEndian() const;

  /// The file that describes the registers, as the module gives it: XML, or a zip archive of it.
  PortFile Description() const;

  /// Whether the camera is busy and so was opened for reading only.
  bool IsReduced() const noexcept { return m_Reduced; }

 private:
  void OpenSystem(const CCatalog &catalog, const std::string &wish);
  void OpenInterface(const CCatalog &catalog, const std::string &wish);
  void OpenDevice(const CameraEntry &camera, PortUse use);

  /// The first one of the device, which is open.
  void OpenStream();

  const CProducer &Producer() const noexcept { return *m_pProducer; }

  const Module m_Module;
  std::string m_CameraName;
  std::shared_ptr<const CSystem> m_pSystem;
  std::shared_ptr<const CInterface> m_pInterface;
  std::shared_ptr<const CDevice> m_pDevice;
  std::shared_ptr<const CDataStream> m_pStream;
  const CProducer *m_pProducer = nullptr;
  GenTL::PORT_HANDLE m_Handle = GENTL_INVALID_HANDLE;
  bool m_Reduced = false;
};

}  // namespace Lumivex::Consumer
