#include "model/sheet.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "controls/numbers.h"
#include "model/text.h"

namespace velgrove {
namespace {

using Row = std::vector<std::string>;

// ---- Text

std::vector<std::size_t> widthsOf(const Sheet& sheet) {
  std::vector<std::size_t> widths;
  for (std::size_t column = 0; column < sheet.columns.size(); ++column) {
    std::size_t width = characterCount(sheet.columns[column].caption);
    for (const Row& row : sheet.rows) width = std::max(width, characterCount(row[column]));
    widths.push_back(width);
  }
  return widths;
}

std::string alignedLine(const Sheet& sheet, const Row& row, const std::vector<std::size_t>& widths) {
  std::string text;
  for (std::size_t column = 0; column < row.size(); ++column) {
    const std::string blanks(widths[column] - characterCount(row[column]), ' ');
    text += "  ";
    text += sheet.columns[column].align == Sheet::Align::Right ? blanks + row[column] : row[column] + blanks;
  }
  text.resize(text.find_last_not_of(' ') + 1);
  return text + "\n";
}

Row captionsOf(const Sheet& sheet) {
  Row captions;
  for (const auto& column : sheet.columns) captions.push_back(column.caption);
  return captions;
}

std::string table(const Sheet& sheet) {
  const auto widths = widthsOf(sheet);
  Row rules;
  for (const std::size_t width : widths) rules.emplace_back(width, '-');
  std::string text = alignedLine(sheet, captionsOf(sheet), widths) + alignedLine(sheet, rules, widths);
  for (const Row& row : sheet.rows) text += alignedLine(sheet, row, widths);
  return text;
}

// ---- Comma-separated values

bool isNumber(std::string_view text) {
  try {
    (void)toNumber(text);
    return true;
  } catch (const RunTimeError&) {
    return false;
  }
}

/// Shows travel: a description mustn't run a program on the machine of whoever opens the sheet.
bool wouldBeFormula(std::string_view text) {
  constexpr std::string_view Blanks = " \t\r\n";
  constexpr std::string_view Beginnings = "=+-@";
  const auto first = text.find_first_not_of(Blanks);
  return first != std::string_view::npos && Beginnings.find(text[first]) != std::string_view::npos &&
         !isNumber(text);
}

std::string field(const std::string& text) {
  std::string plain = wouldBeFormula(text) ? "'" + text : text;
  if (plain.find_first_of(",\"\r\n") == std::string::npos) return plain;
  std::string quoted = "\"";
  for (const char c : plain) quoted += c == '"' ? "\"\"" : std::string(1, c);
  return quoted + "\"";
}

std::string record(const Row& row) {
  std::string line;
  for (const auto& text : row) line += (&text == row.data() ? "" : ",") + field(text);
  return line + "\r\n";
}

}  // namespace

Sheet withoutEmptyColumns(Sheet sheet) {
  if (sheet.rows.empty()) return sheet;
  for (std::size_t column = sheet.columns.size(); column-- > 0;) {
    if (std::ranges::any_of(sheet.rows, [column](const Row& row) { return !row[column].empty(); })) continue;
    const auto at = static_cast<std::ptrdiff_t>(column);
    sheet.columns.erase(sheet.columns.begin() + at);
    for (Row& row : sheet.rows) row.erase(row.begin() + at);
  }
  return sheet;
}

std::string sheetText(const Sheet& sheet) {
  std::string text = sheet.title;
  if (!sheet.remark.empty()) text += "  (" + sheet.remark + ")";
  text += "\n\n";
  return sheet.rows.empty() ? text : text + table(withoutEmptyColumns(sheet));
}

std::string sheetCsv(const Sheet& sheet) {
  std::string text = record(captionsOf(sheet));
  for (const Row& row : sheet.rows) text += record(row);
  return text;
}

}  // namespace velgrove
