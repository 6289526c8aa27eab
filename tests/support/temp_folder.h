#pragma once

#include <cstdlib>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace velgrove {

/// A folder of a test's own, gone at its end.
class TempFolder {
 public:
  TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "velgrove-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for the test: " + name);
    m_path = name;
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  [[nodiscard]] std::filesystem::path operator/(const std::string& name) const { return m_path / name; }
  [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
  /// The names of all that stands in it.
  [[nodiscard]] std::set<std::string> names() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_path))
      names.insert(entry.path().filename());
    return names;
  }

 private:
  std::filesystem::path m_path;
};

}  // namespace velgrove
