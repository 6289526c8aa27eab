#pragma once

#include <filesystem>
#include <functional>

#include "controls/files.h"
#include "controls/machine.h"
#include "core/show_state.h"

namespace velgrove {

/// Puts the open show into its file. The bytes are made in one turn; what waits for the disk is done aside,
/// so that the light goes on.
class ShowSaver {
 public:
  struct Wiring {
    std::function<void()> begins;  ///< the show's bytes are made in this turn
    std::function<void()> saved;   ///< they stand in its file
    /// Where new shows and the recent list lie; empty: there is none, and no list is written.
    std::filesystem::path dataFolder;
    Disk disk;
  };

  ShowSaver(ShowState& show, Machine& machine, Wiring wiring);
  ShowSaver(const ShowSaver&) = delete;
  ShowSaver& operator=(const ShowSaver&) = delete;

  /// Writes the show to ProjectFileName and brings it to the top of the recent list. The version before stays
  /// as `<name>.bak`; of a show that came from a damaged file also the original, as `<name>.damaged`. False
  /// when the show isn't in its file: the operator has been told, and ProjectDirty stands.
  bool SaveAll();

 private:
  void save();
  void keepDamagedOriginal();
  void writeRecentList();
  [[nodiscard]] bool goesToDataFolder() const;

  ShowState& m_show;
  Machine& m_machine;
  Wiring m_wiring;
  bool m_saving = false;
};

}  // namespace velgrove
