#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace velgrove {

/// A list in report view. Rows and their positions count from 1; column 0 is the row's own text.
///
/// The face copies what it shows whenever `revision` has moved, and changes its rows by their identities.
class ListView {
 public:
  static constexpr std::size_t MaxColumns = 8;

  struct Column {
    std::string Header;
    int Width = 0;  ///< pixels
  };

  struct Row {
    std::array<std::string, MaxColumns> Texts;
    int SmallIcon = 0;      ///< 0 shows none
    unsigned Identity = 0;  ///< stays with the row wherever it moves; no other row of this list has it
  };

  enum class Pointer { Arrow = 1, Forbidden = 12 };

  std::vector<Column> Columns;
  std::string ToolTip;
  Pointer MousePointer = Pointer::Arrow;  ///< shown while the mouse is over the list

  [[nodiscard]] int count() const { return static_cast<int>(m_rows.size()); }
  /// The row at a position; Fault::Subscript when there is none.
  [[nodiscard]] const Row& row(int position) const;
  [[nodiscard]] const std::string& text(int position) const { return row(position).Texts[0]; }
  [[nodiscard]] const std::vector<Row>& rows() const { return m_rows; }

  /// Adds a row so that it stands at a position, 1 to count + 1; Fault::Subscript otherwise.
  void add(int position, std::string text);
  /// Fault::Subscript when there is no such row or column.
  void setText(int position, std::size_t column, std::string text);
  void setIcon(int position, int icon);
  void remove(int position);
  /// Empties the list. A row added later with the text of one that stood here takes over its identity, so
  /// that a list which is cleared and filled again doesn't jump on the screen.
  void clear();

  /// The first row from the top whose whole text equals, without regard to case; 0 when there is none.
  [[nodiscard]] int findItem(const std::string& text) const;

  /// Sorts the rows by a comparison that gives below 0, 0 or above 0; equal rows keep their order.
  void sort(const std::function<int(const Row&, const Row&)>& compare);

  [[nodiscard]] int selected() const { return m_selected; }  ///< 0 when no row is
  void select(int position);

  /// Asks for a row to be scrolled into view.
  void ensureVisible(int position);
  /// The last two rows asked into view, the newer one last; 0 none, and a row can have gone since.
  [[nodiscard]] const std::array<int, 2>& visibleRows() const { return m_visible; }
  /// How often a row was asked into view, so that the same row asked for twice is seen twice.
  [[nodiscard]] unsigned visibleRequests() const { return m_visibleRequests; }

  /// Moves with every change of rows, texts, icons or selection and with every request to scroll, and with
  /// nothing else. The colours of rows are their owner's.
  [[nodiscard]] unsigned revision() const { return m_revision; }

 private:
  [[nodiscard]] Row& rowToChange(int position);

  std::vector<Row> m_rows;
  std::unordered_map<std::string, unsigned> m_cleared;  ///< identities by text
  unsigned m_lastIdentity = 0;
  int m_selected = 0;
  std::array<int, 2> m_visible{};
  unsigned m_visibleRequests = 0;
  unsigned m_revision = 0;
};

}  // namespace velgrove
