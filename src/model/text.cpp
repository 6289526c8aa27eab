#include "model/text.h"

#include <algorithm>
#include <array>

namespace velgrove {
namespace {

/// Windows-1252 from 0x80 to 0x9F; everywhere else the byte is the code point.
constexpr std::array<char32_t, 32> Upper{0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                         0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                         0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                         0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
constexpr std::size_t UpperStart = 0x80;
constexpr std::size_t UpperEnd = UpperStart + Upper.size();

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < UpperStart; });
}

void appendUtf8(std::string& text, char32_t code) {
  const auto put = [&](char32_t byte) { text.push_back(static_cast<char>(byte)); };
  if (code < 0x80) {
    put(code);
  } else if (code < 0x800) {
    put(0xC0 | (code >> 6));
    put(0x80 | (code & 0x3F));
  } else {  // the code page holds nothing above the basic plane
    put(0xE0 | (code >> 12));
    put(0x80 | ((code >> 6) & 0x3F));
    put(0x80 | (code & 0x3F));
  }
}

struct Lead {
  std::size_t bytes;
  char32_t bits;
  char32_t least;  ///< below it the sequence would be longer than it may be
};

std::optional<Lead> leadOf(unsigned char byte) {
  if (byte < 0x80) return Lead{1, byte, 0};
  if ((byte & 0xE0U) == 0xC0) return Lead{2, byte & 0x1FU, 0x80};
  if ((byte & 0xF0U) == 0xE0) return Lead{3, byte & 0x0FU, 0x800};
  if ((byte & 0xF8U) == 0xF0) return Lead{4, byte & 0x07U, 0x10000};
  return std::nullopt;
}

}  // namespace

Utf8Character firstCharacter(std::string_view text) {
  constexpr Utf8Character None{NoCharacter, 1};
  const auto lead = leadOf(static_cast<unsigned char>(text.front()));
  if (!lead || text.size() < lead->bytes) return None;
  char32_t code = lead->bits;
  for (std::size_t at = 1; at < lead->bytes; ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if ((byte & 0xC0U) != 0x80) return None;
    code = (code << 6) | (byte & 0x3FU);
  }
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < lead->least || code > 0x10FFFF || surrogate) return None;
  return {code, lead->bytes};
}

std::size_t characterCount(std::string_view text) {
  std::size_t count = 0;
  for (; !text.empty(); ++count) text.remove_prefix(firstCharacter(text).bytes);
  return count;
}

std::optional<std::uint8_t> codePageByte(char32_t character) {
  if (character < UpperStart || (character >= UpperEnd && character <= 0xFF))
    return static_cast<std::uint8_t>(character);
  const auto* const at = std::find(Upper.begin(), Upper.end(), character);
  if (at == Upper.end()) return std::nullopt;
  return static_cast<std::uint8_t>(UpperStart + static_cast<std::size_t>(at - Upper.begin()));
}

std::string utf8FromCodePage(std::string_view bytes) {
  if (isAscii(bytes)) return std::string(bytes);
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 2);
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    appendUtf8(text, byte >= UpperStart && byte < UpperEnd ? Upper[byte - UpperStart] : byte);
  }
  return text;
}

std::string codePageFromUtf8(std::string_view text) {
  if (isAscii(text)) return std::string(text);
  std::string bytes;
  bytes.reserve(text.size());
  while (!text.empty()) {
    const auto character = firstCharacter(text);
    bytes.push_back(static_cast<char>(codePageByte(character.code).value_or('?')));
    text.remove_prefix(character.bytes);
  }
  return bytes;
}

std::string fixedText(std::string_view text, std::size_t length) {
  std::size_t count = 0;
  std::size_t end = 0;
  for (; count < length && end < text.size(); ++count) end += firstCharacter(text.substr(end)).bytes;
  return std::string(text.substr(0, end)).append(length - count, ' ');
}

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

std::string printable(std::string_view text) {
  std::string line;
  while (!text.empty()) {
    const auto [code, bytes] = firstCharacter(text);
    const bool shows = code >= 0x20 && (code < 0x7F || code > 0x9F) && code != NoCharacter;
    line += shows ? text.substr(0, bytes) : "?";
    text.remove_prefix(bytes);
  }
  return line;
}

}  // namespace velgrove
