#pragma once

#include <string>
#include <vector>

/// What is put on paper, and how it reads as text and in a spreadsheet.
namespace velgrove {

/// Rows of texts under captions.
struct Sheet {
  enum class Align { Left, Right };
  /// Where a text that is too long for its column goes on; at commas the items of a list stay whole.
  enum class Wrap { AtWords, AtCommas };
  struct Column {
    std::string caption;
    Align align = Align::Left;
    Wrap wrap = Wrap::AtWords;
  };

  std::string title;   ///< "XY Cue List"
  std::string remark;  ///< "XY Fader, 12 cues"; may be empty
  std::vector<Column> columns;
  std::vector<std::vector<std::string>> rows;  ///< each has a text for every column, in one line
};

/// The sheets that are printed together.
struct Printout {
  std::string show;  ///< its name
  std::vector<Sheet> sheets;
};

/// For the eye: without the columns in which no row says anything. A sheet without rows keeps them all.
[[nodiscard]] Sheet withoutEmptyColumns(Sheet sheet);

/// As text for a terminal: title and remark, and the columns that say something, aligned.
[[nodiscard]] std::string sheetText(const Sheet& sheet);

/// As comma-separated values (RFC 4180): UTF-8, the captions and then all rows. A text that a spreadsheet
/// would take for a formula begins with an apostrophe; a number stays one.
[[nodiscard]] std::string sheetCsv(const Sheet& sheet);

}  // namespace velgrove
