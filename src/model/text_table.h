#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velgrove {

/// A text on one line: control characters are shown as blanks, blanks at its end are gone.
[[nodiscard]] std::string oneLine(std::string_view text);

/// Rows of texts in aligned columns, under headings.
class TextTable {
 public:
  enum class Align { Left, Right };
  struct Column {
    std::string heading;
    Align align = Align::Left;
  };

  explicit TextTable(std::vector<Column> columns) : m_columns(std::move(columns)) {}
  /// As many texts as there are columns.
  void add(std::vector<std::string> row) { m_rows.push_back(std::move(row)); }
  [[nodiscard]] std::string str() const;

 private:
  [[nodiscard]] std::string line(const std::vector<std::string>& row,
                                 const std::vector<std::size_t>& widths) const;

  std::vector<Column> m_columns;
  std::vector<std::vector<std::string>> m_rows;
};

}  // namespace velgrove
