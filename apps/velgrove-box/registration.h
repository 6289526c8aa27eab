#pragma once

#include <filesystem>
#include <string>

namespace velgrove {

/// Whether a box may have that name: letters, digits, dots, dashes and underscores, neither dot nor dash in
/// front, at most 64.
[[nodiscard]] bool isBoxName(const std::string& name);

/// A box's name, held by this program alone as long as this lives: the lock file beside the link, held even
/// while the box is unplugged.
class BoxName {
 public:
  /// A RunTimeError when another box of that name runs or the lock can't be made.
  BoxName(const std::filesystem::path& folder, const std::string& name);
  ~BoxName();
  BoxName(const BoxName&) = delete;
  BoxName& operator=(const BoxName&) = delete;

  /// No box that ended in bad order has left the lock behind.
  [[nodiscard]] bool isFresh() const { return m_fresh; }

 private:
  [[nodiscard]] bool take(const std::string& name);

  std::filesystem::path m_lockFile;
  int m_descriptor = -1;
  bool m_fresh = false;
};

/// The link by which desks find the box. It is gone when this ends.
class BoxRegistration {
 public:
  /// Makes the folder, shut to other users, and claims the name; a RunTimeError with clear words when
  /// another box has it.
  BoxRegistration(const std::filesystem::path& folder, const std::string& name);
  ~BoxRegistration() { withdraw(); }
  BoxRegistration(const BoxRegistration&) = delete;
  BoxRegistration& operator=(const BoxRegistration&) = delete;

  /// Points the link to a terminal, in one step if it pointed to another one before.
  void publish(const std::string& terminal);
  /// Takes the link away, unless somebody else has put another in its place.
  void withdraw();

  [[nodiscard]] const std::filesystem::path& link() const { return m_link; }

 private:
  std::filesystem::path m_link;
  BoxName m_name;
  std::string m_terminal;
};

}  // namespace velgrove
