#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/files.h"

namespace velgrove {

/// A show as it was before it could be saved, and where it belongs.
struct RecoveryCopy {
  std::string file;  ///< of the show, with its path; needn't be there yet
  std::string name;
  std::string show;  ///< the bytes of a show file
};

/// The bytes of a copy's file: a few lines in front of the show.
[[nodiscard]] std::string writeCopy(const RecoveryCopy& copy);
/// Nothing when the bytes don't begin as a copy does.
[[nodiscard]] std::optional<RecoveryCopy> readCopy(std::string_view bytes);

/// A desk's place for its copy. It is locked until the process ends in whatever way, so that the copy of a
/// desk that lives is never taken for one that was left.
class RecoverySlot {
 public:
  /// Nothing while another desk has it. Fault::File when it can't be locked.
  [[nodiscard]] static std::shared_ptr<RecoverySlot> take(const std::filesystem::path& folder, int number);
  explicit RecoverySlot(std::filesystem::path copy, int lock) : m_copy(std::move(copy)), m_lock(lock) {}
  ~RecoverySlot();
  RecoverySlot(const RecoverySlot&) = delete;
  RecoverySlot& operator=(const RecoverySlot&) = delete;

  [[nodiscard]] const std::filesystem::path& copy() const { return m_copy; }

 private:
  std::filesystem::path m_copy;
  int m_lock;
};

/// A copy that a desk left which has ended.
struct FoundCopy {
  std::shared_ptr<RecoverySlot> slot;
  std::string bytes = {};                  ///< of the copy's file
  std::string fault = {};                  ///< why it can't be read; "" when it can
  bool unread = false;                     ///< the disk refused: it may give the copy another time
  std::optional<RecoveryCopy> copy = {};   ///< nothing when it can't be read
  std::string made = {};                   ///< when, in the time of the place
  std::optional<std::string> inFile = {};  ///< the bytes that stand in the show's own file
  bool fileIsNewer = false;
};

/// The folder of the copies: one a desk, and those that the operator declined. All of it waits for the disk.
class RecoveryFolder {
 public:
  /// What becomes of a copy that isn't opened: a show file for the open dialog. Behind the first comes a
  /// number, so that none takes the place of another.
  static constexpr const char* Declined = "declined";
  static constexpr const char* Unreadable = "unreadable";

  RecoveryFolder(std::filesystem::path folder, Disk disk);
  RecoveryFolder(const RecoveryFolder&) = delete;
  RecoveryFolder& operator=(const RecoveryFolder&) = delete;

  /// The copies of desks that have ended, each with its lock held.
  [[nodiscard]] std::vector<FoundCopy> find() const;
  /// Makes a copy that was found this desk's own.
  void adopt(std::shared_ptr<RecoverySlot> slot) { m_slot = std::move(slot); }
  /// Replaces this desk's copy.
  void write(const std::string& bytes);
  /// Removes this desk's copy, if there is one.
  void remove() const;
  /// Moves a copy to a name that isn't offered again.
  void setAside(const FoundCopy& found, const char* name) const;
  static void remove(const RecoverySlot& slot);

 private:
  [[nodiscard]] std::shared_ptr<RecoverySlot> freeSlot() const;

  std::filesystem::path m_folder;
  Disk m_disk;
  std::shared_ptr<RecoverySlot> m_slot;  ///< taken with the first copy
};

}  // namespace velgrove
