#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "dmx/box_folder.h"

namespace velgrove {

/// An interface that stands on this machine, real or virtual. The hexadecimal texts are as the kernel gives
/// them ("10c4"); what isn't known is empty.
struct InterfaceDevice {
  std::string path{};  ///< of its serial port
  std::string vendor{};
  std::string product{};
  std::string serial{};

  friend bool operator==(const InterfaceDevice&, const InterfaceDevice&) = default;
};

/// Where the machine keeps its devices; tests lay out their own.
struct MachineRoots {
  std::filesystem::path ttyClass = "/sys/class/tty";
  std::filesystem::path dev = "/dev";
  std::filesystem::path boxes = virtualBoxFolder();
};

/// All interfaces: every serial port driven by the CP210x bridge's driver, whoever made it, in order of
/// device number, then the virtual boxes by name. A port set by hand is the only one, there or not; empty:
/// none is set.
[[nodiscard]] std::vector<InterfaceDevice> findInterfaces(const MachineRoots& roots,
                                                          const std::string& portByHand);

/// The path at which a lost device stands again: found by its serial number if it has one, else by the same
/// path. Nothing while it is absent. Its node may appear a moment before the user is let in, so an opening
/// that is refused just after is worth another try.
[[nodiscard]] std::optional<std::string> findAgain(const MachineRoots& roots, const InterfaceDevice& lost);

/// The digits at the end of a port's name; 0 for a name without.
[[nodiscard]] int portNumber(const std::string& path);

}  // namespace velgrove
