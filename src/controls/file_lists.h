#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "controls/files.h"
#include "controls/widgets.h"

/// The three lists with which a window walks over the disk: drives, folders, files. Reading the disk can take
/// long, so that each does it by an `Aside`. A path or pattern raises Change when it really changes, whoever
/// sets it.
namespace velgrove {

/// Where the operator's files may lie on this machine.
struct DriveRoots {
  std::filesystem::path home = {};                       ///< empty: none
  std::vector<std::filesystem::path> mediaFolders = {};  ///< what is plugged in shows in them as folders
  std::filesystem::path root = "/";                      ///< of the whole machine
  /// Whether something is mounted at a folder.
  std::function<bool(const std::filesystem::path&)> isMounted = {};
};
[[nodiscard]] DriveRoots systemDriveRoots();

/// The drives: home, what is plugged in, and the whole machine.
class DriveListBox {
 public:
  struct Item {
    std::string Label;
    std::filesystem::path Path;
  };

  DriveListBox(DriveRoots roots, Aside aside) : m_roots(std::move(roots)), m_aside(std::move(aside)) {}

  Event Change;

  /// Looks again what is plugged in, and shows the drive on which a path lies. Raises nothing.
  void Refresh(const std::filesystem::path& holding);
  [[nodiscard]] const std::vector<Item>& items() const { return m_items; }
  [[nodiscard]] int listIndex() const { return m_index; }         ///< from 0; -1 when nothing is chosen
  [[nodiscard]] unsigned revision() const { return m_revision; }  ///< moves with the items
  [[nodiscard]] std::filesystem::path Drive() const;              ///< "" when nothing is chosen
  /// Chooses the drive on which a path lies.
  void setDrive(const std::filesystem::path& path);
  /// The operator's choice; Fault::Subscript when there is none such.
  void choose(int index);

 private:
  [[nodiscard]] int driveOf(const std::filesystem::path& path) const;

  DriveRoots m_roots;
  Aside m_aside;
  std::vector<Item> m_items;
  int m_index = -1;
  unsigned m_revision = 0;
};

/// The folders on the way to a path, the path itself and the folders in it. One row is highlighted; opening
/// it makes it the path.
class DirListBox {
 public:
  struct Row {
    std::string Name;
    std::filesystem::path Path;
    int Depth = 0;        ///< 0 for the root
    bool IsOpen = false;  ///< on the way to the path, or the path itself
  };

  explicit DirListBox(Aside aside) : m_aside(std::move(aside)) {}

  Event Change;
  Event LostFocus;
  /// The operator's hand opened a folder that can't be read.
  std::function<void(const RunTimeError&)> Refused;

  [[nodiscard]] const std::filesystem::path& Path() const { return m_path; }
  /// Fault::File when the folder can't be read; all is then as it was.
  void setPath(const std::filesystem::path& path);
  [[nodiscard]] const std::vector<Row>& rows() const { return m_rows; }
  [[nodiscard]] int listIndex() const { return m_index; }         ///< highlighted row from 0; -1 none
  [[nodiscard]] unsigned revision() const { return m_revision; }  ///< moves with the rows
  /// The operator's hand on a row; Fault::Subscript when there is none such.
  void highlight(int index);
  [[nodiscard]] std::filesystem::path highlighted() const;  ///< "" when no row is
  /// The path becomes the highlighted row, as a double click or Enter has it. A folder that can't be read
  /// raises Refused; all is then as it was, and the path highlighted again.
  void openHighlighted();

 private:
  void highlightPath();

  Aside m_aside;
  std::filesystem::path m_path;
  std::vector<Row> m_rows;
  int m_index = -1;
  unsigned m_revision = 0;
};

/// The files of a folder whose names match a pattern, in the order in which people count: "Act 2" stands
/// before "Act 10".
class FileListBox {
 public:
  explicit FileListBox(Aside aside) : m_aside(std::move(aside)) {}

  Event DblClick;
  Event PathChange;
  Event PatternChange;

  [[nodiscard]] const std::filesystem::path& Path() const { return m_path; }
  /// Shows another folder. Fault::File when it can't be read; the list is then empty.
  void setPath(const std::filesystem::path& path);
  [[nodiscard]] const std::string& Pattern() const { return m_pattern; }
  /// One or more patterns with "*" and "?", ";" between them; letters match in both cases.
  void setPattern(const std::string& pattern);
  /// Reads the folder again, with the errors of setPath.
  void Refresh();

  [[nodiscard]] const std::vector<std::string>& items() const { return m_items; }
  [[nodiscard]] int listIndex() const { return m_index; }         ///< from 0; -1 when no name is selected
  [[nodiscard]] unsigned revision() const { return m_revision; }  ///< moves with the items
  [[nodiscard]] std::string FileName() const;                     ///< the name selected, or ""
  /// The operator's click and double click on a name; Fault::Subscript when there is none such.
  void choose(int index);
  void doubleClick(int index);
  /// Chooses a name, or none when it isn't listed.
  void select(const std::string& name);
  void chooseNone() { m_index = -1; }

 private:
  void filter();

  Aside m_aside;
  std::filesystem::path m_path;
  std::string m_pattern = "*";
  std::vector<std::string> m_all;  ///< every file of the folder, in order
  std::vector<std::string> m_items;
  int m_index = -1;
  unsigned m_revision = 0;
};

}  // namespace velgrove
