#pragma once

#include <filesystem>

#include "controls/files.h"
#include "controls/machine.h"
#include "core/show_state.h"

namespace velgrove {

/// Puts the open show into its file. The bytes are made in one turn; what waits for the disk is done aside,
/// so that the light goes on.
class ShowSaver {
 public:
  /// `dataFolder`: where new shows and the recent list lie; empty: there is none, and no list is written.
  ShowSaver(ShowState& show, Machine& machine, std::filesystem::path dataFolder, Disk disk);
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
  std::filesystem::path m_dataFolder;
  Disk m_disk;
  bool m_saving = false;
};

}  // namespace velgrove
