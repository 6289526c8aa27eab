#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "controls/machine.h"
#include "core/recovery_folder.h"
#include "core/show_state.h"

namespace velgrove {

/// So that a crash loses nothing: a copy of the changed show lies beside the user's data, and the next start
/// offers it. The bytes are made in one turn; nobody waits for the disk.
///
/// The copy holds what the operator made, without the levels and shape numbers of the moment: a show begins
/// in the dark and is drawn anew, and playing it changes nothing that is worth a question.
class Recovery {
 public:
  struct Wiring {
    std::function<std::string()> openFile;  ///< of the open show, with its path
    /// Opens a copy in place of a show's file, and says whether it could be read as a show. `damaged` is what
    /// stands in that file, when something of it is missing.
    std::function<bool(const RecoveryCopy& copy, std::optional<std::string> damaged)> openCopy;
    std::filesystem::path dataFolder;  ///< empty: no copies are kept
    Disk disk;
  };

  Recovery(ShowState& show, Machine& machine, Wiring wiring);
  Recovery(const Recovery&) = delete;
  Recovery& operator=(const Recovery&) = delete;

  /// Begins to look at the show now and then.
  void start();
  /// Asks about each copy that is found, until one is opened; whether one is.
  [[nodiscard]] bool offer();

  /// The show may have changed: keeps it, if ProjectDirty says so too.
  void keep();
  /// The show is what it is by its file, or by its beginning: there is nothing to lose.
  void opened();
  void saveBegins();  ///< the bytes of a save are made in this turn
  void saved();       ///< and stand in the show's file
  /// The operator has given up what was changed.
  void letGo();

 private:
  [[nodiscard]] std::string copyOfShow() const;
  void follow();
  void want(const std::string& bytes);
  void failed(const std::string& reason);
  [[nodiscard]] bool offer(const FoundCopy& found);
  [[nodiscard]] bool open(const FoundCopy& found, const RecoveryCopy& copy);
  void setAside(const FoundCopy& found, const char* name) const;
  void onDisk(const std::function<void()>& work) const;

  ShowState& m_show;
  Machine& m_machine;
  Wiring m_wiring;
  Timer m_timer;
  std::shared_ptr<RecoveryFolder> m_folder;  ///< shared with work that nobody waits for; none: no copies
  std::string m_safe;                        ///< the copy that isn't needed; "" none
  std::string m_saving;                      ///< the copy that a save makes needless
  std::optional<std::string> m_kept = "";    ///< what was handed to the disk last, "" for no copy; unknown
                                             ///< after a failure
  bool m_told = false;                       ///< of copies that fail, until the show is saved or let go of
};

}  // namespace velgrove
