#include "dmx/discovery.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <tuple>

namespace velgrove {
namespace {

namespace fs = std::filesystem;

constexpr const char* BridgeDriver = "cp210x";

std::string firstLine(const fs::path& file) {
  std::ifstream in(file);
  std::string line;
  std::getline(in, line);
  line.erase(line.find_last_not_of(" \t\r") + 1);
  return line;
}

/// A serial port as the kernel lists it. Who made it stands in the nearest folder above its device that has
/// the numbers of a USB device; a port of another kind has none.
InterfaceDevice describeTty(const MachineRoots& roots, const std::string& name) {
  InterfaceDevice device{.path = roots.dev / name};
  std::error_code error;
  fs::path folder = fs::canonical(roots.ttyClass / name / "device", error);
  if (error) return device;
  while (!fs::exists(folder / "idVendor", error)) {
    if (!folder.has_relative_path()) return device;
    folder = folder.parent_path();
  }
  device.vendor = firstLine(folder / "idVendor");
  device.product = firstLine(folder / "idProduct");
  device.serial = firstLine(folder / "serial");
  return device;
}

/// All serial ports of the kernel by device number.
std::vector<std::string> ttyNames(const MachineRoots& roots) {
  std::vector<std::string> names;
  for (const fs::path& entry : entriesOf(roots.ttyClass)) names.push_back(entry.filename());
  std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
    return std::tuple(portNumber(a), a) < std::tuple(portNumber(b), b);
  });
  return names;
}

bool isBridge(const MachineRoots& roots, const std::string& name) {
  std::error_code error;
  return fs::read_symlink(roots.ttyClass / name / "device" / "driver", error).filename() == BridgeDriver;
}

bool exists(const fs::path& path) {
  std::error_code error;
  return fs::exists(path, error);
}

/// A port set by hand, through whatever links, with the identity that the kernel knows.
InterfaceDevice describePort(const MachineRoots& roots, const std::string& path) {
  std::error_code error;
  const fs::path port = fs::weakly_canonical(path, error);
  InterfaceDevice device;
  const std::string name = port.filename();
  if (!error && !name.empty() && port == fs::weakly_canonical(roots.dev / name, error))
    device = describeTty(roots, name);
  device.path = path;
  return device;
}

bool isSame(const InterfaceDevice& a, const InterfaceDevice& b) {
  return a.serial == b.serial && a.vendor == b.vendor && a.product == b.product;
}

bool isBoxLink(const MachineRoots& roots, const fs::path& path) {
  return path.parent_path() == roots.boxes;
}

std::optional<std::string> findBySerial(const MachineRoots& roots, const InterfaceDevice& lost) {
  // Makers are known to give a whole series one serial number: the old path is the better witness.
  if (exists(lost.path) && isSame(describePort(roots, lost.path), lost)) return lost.path;
  for (const std::string& name : ttyNames(roots)) {
    const InterfaceDevice device = describeTty(roots, name);
    if (isSame(device, lost) && exists(device.path)) return device.path;
  }
  return std::nullopt;
}

}  // namespace

std::vector<InterfaceDevice> findInterfaces(const MachineRoots& roots, const std::string& portByHand) {
  if (!portByHand.empty()) return {describePort(roots, portByHand)};
  std::vector<InterfaceDevice> devices;
  for (const std::string& name : ttyNames(roots))
    if (isBridge(roots, name)) devices.push_back(describeTty(roots, name));
  for (const fs::path& link : registeredBoxes(roots.boxes)) devices.push_back({.path = link});
  return devices;
}

std::optional<std::string> findAgain(const MachineRoots& roots, const InterfaceDevice& lost) {
  if (!lost.serial.empty()) return findBySerial(roots, lost);
  if (isBoxLink(roots, lost.path)) {
    const auto boxes = registeredBoxes(roots.boxes);
    if (std::find(boxes.begin(), boxes.end(), fs::path(lost.path)) == boxes.end()) return std::nullopt;
    return lost.path;
  }
  if (!exists(lost.path)) return std::nullopt;
  return lost.path;
}

int portNumber(const std::string& path) {
  const std::string name = fs::path(path).filename();
  const auto digits = name.find_last_not_of("0123456789") + 1;
  int number = 0;
  const char* const end = name.data() + name.size();
  const auto result = std::from_chars(name.data() + digits, end, number);
  return result.ec == std::errc{} ? number : 0;
}

}  // namespace velgrove
