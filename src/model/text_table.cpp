#include "model/text_table.h"

#include <algorithm>

#include "model/text.h"

namespace velgrove {

std::string oneLine(std::string_view text) {
  std::string line;
  while (!text.empty()) {
    const auto [code, bytes] = firstCharacter(text);
    const bool control = code < 0x20 || (code >= 0x7F && code < 0xA0) || code == NoCharacter;
    if (control)
      line += ' ';
    else
      line += text.substr(0, bytes);
    text.remove_prefix(bytes);
  }
  line.resize(line.find_last_not_of(' ') + 1);
  return line;
}

std::string TextTable::line(const std::vector<std::string>& row,
                            const std::vector<std::size_t>& widths) const {
  std::string text;
  for (std::size_t column = 0; column < row.size(); ++column) {
    const std::string blanks(widths[column] - characterCount(row[column]), ' ');
    text += "  ";
    text += m_columns[column].align == Align::Right ? blanks + row[column] : row[column] + blanks;
  }
  text.resize(text.find_last_not_of(' ') + 1);
  return text + "\n";
}

std::string TextTable::str() const {
  std::vector<std::string> headings;
  std::vector<std::string> rules;
  std::vector<std::size_t> widths;
  for (std::size_t column = 0; column < m_columns.size(); ++column) {
    std::size_t width = characterCount(m_columns[column].heading);
    for (const auto& row : m_rows) width = std::max(width, characterCount(row[column]));
    headings.push_back(m_columns[column].heading);
    rules.emplace_back(width, '-');
    widths.push_back(width);
  }
  std::string text = line(headings, widths) + line(rules, widths);
  for (const auto& row : m_rows) text += line(row, widths);
  return text;
}

}  // namespace velgrove
