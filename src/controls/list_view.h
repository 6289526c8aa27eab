#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace velgrove {

/// A list in report view. Rows and their positions count from 1; column 0 is the row's own text.
class ListView {
 public:
  static constexpr std::size_t MaxColumns = 8;

  struct Column {
    std::string Header;
    int Width = 0;  ///< pixels
  };

  struct Row {
    std::array<std::string, MaxColumns> Texts;
    int SmallIcon = 0;  ///< 0 shows none
  };

  std::vector<Column> Columns;

  [[nodiscard]] int count() const { return static_cast<int>(m_rows.size()); }
  /// The row at a position; Fault::Subscript when there is none.
  [[nodiscard]] Row& row(int position);
  [[nodiscard]] const Row& row(int position) const;
  [[nodiscard]] const std::string& text(int position) const { return row(position).Texts[0]; }
  [[nodiscard]] std::vector<Row>& rows() { return m_rows; }
  [[nodiscard]] const std::vector<Row>& rows() const { return m_rows; }

  /// Adds a row so that it stands at a position, 1 to count + 1; Fault::Subscript otherwise.
  Row& add(int position, std::string text);
  void remove(int position);
  void clear();

  /// The first row from the top whose whole text equals, without regard to case; 0 when there is none.
  [[nodiscard]] int findItem(const std::string& text) const;

  /// Sorts the rows by a comparison that gives below 0, 0 or above 0; equal rows keep their order.
  void sort(const std::function<int(const Row&, const Row&)>& compare);

  [[nodiscard]] int selected() const { return m_selected; }  ///< 0 when no row is
  void select(int position);
  void ensureVisible(int position);
  [[nodiscard]] int visibleRow() const { return m_visible; }  ///< the row last asked to be in view, 0 none

  /// Asks for all rows to be painted again; the face looks at the count.
  void redraw() { ++m_redraws; }
  [[nodiscard]] unsigned redraws() const { return m_redraws; }

 private:
  std::vector<Row> m_rows;
  int m_selected = 0;
  int m_visible = 0;
  unsigned m_redraws = 0;
};

}  // namespace velgrove
