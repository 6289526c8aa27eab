#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velgrove {

/// Texts are UTF-8 in memory and Windows-1252 in a show file. The five bytes that the code page leaves
/// undefined stand for U+0081, U+008D, U+008F, U+0090 and U+009D, so that every file reads and writes back
/// the same.
[[nodiscard]] std::string utf8FromCodePage(std::string_view bytes);
/// What the code page doesn't hold, and bytes that are no UTF-8, become '?'.
[[nodiscard]] std::string codePageFromUtf8(std::string_view text);

/// The character at the head of a UTF-8 text. A byte that begins none stands for itself, as NoCharacter.
struct Utf8Character {
  char32_t code;
  std::size_t bytes;
};
inline constexpr char32_t NoCharacter = 0xFFFFFFFF;
[[nodiscard]] Utf8Character firstCharacter(std::string_view text);  ///< the text isn't empty
[[nodiscard]] std::size_t characterCount(std::string_view text);

/// The byte that stands for a character in Windows-1252; nothing when it has none.
[[nodiscard]] std::optional<std::uint8_t> codePageByte(char32_t character);

/// A text on one line: control characters are shown as blanks, blanks at its end are gone.
[[nodiscard]] std::string oneLine(std::string_view text);

/// A foreign text as one line that can be shown: control characters and bytes that are no UTF-8 become '?'.
[[nodiscard]] std::string printable(std::string_view text);

/// The first `length` characters of a text, filled up with blanks.
[[nodiscard]] std::string fixedText(std::string_view text, std::size_t length);

/// A text of always `Length` characters: longer ones are cut, shorter ones filled with blanks.
template <std::size_t Length>
class FixedText {
 public:
  FixedText() : m_text(Length, ' ') {}
  FixedText& operator=(std::string_view text) {
    m_text = fixedText(text, Length);
    return *this;
  }
  [[nodiscard]] const std::string& str() const { return m_text; }  ///< all characters, blanks included

 private:
  std::string m_text;
};

}  // namespace velgrove
