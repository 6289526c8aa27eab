#include "plot/dxf_check.h"

#include <charconv>
#include <optional>
#include <string>

#include "controls/faults.h"

namespace velgrove {
namespace {

constexpr std::size_t LargestFile = std::size_t{1} << 21;
constexpr std::size_t LongestLine = 2049;  // of the standard

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view Blanks = " \t\r\n";
  const auto first = text.find_first_not_of(Blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

std::optional<long> wholeNumber(std::string_view text) {
  long number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

/// Whether the standard puts a number behind a group code; its reader then takes a blank line for none.
bool isNumber(long code) {
  return (code >= 10 && code <= 99) || (code >= 110 && code <= 299) || (code >= 1010 && code <= 1071);
}

class Check {
 public:
  Check(std::string_view text, const std::filesystem::path& file) : m_rest(text), m_file(file) {}

  void run() {
    if (m_rest.size() > LargestFile) fail("is too large for a symbol");
    m_rest = trimmed(m_rest);
    while (!m_rest.empty()) {
      const auto code = wholeNumber(line());
      if (!code) fail("is no exchange drawing");
      pair(*code, line());
    }
    if (m_entity != "EOF") fail("is cut off");
  }

 private:
  [[noreturn]] void fail(const std::string& reason) const {
    throw RunTimeError(Fault::File, m_file.string() + ": line " + std::to_string(m_number) + ": " + reason);
  }

  std::string_view line() {
    ++m_number;
    const std::size_t end = std::min(m_rest.find('\n'), m_rest.size());
    const std::string_view line = m_rest.substr(0, end);
    if (line.size() > LongestLine || line.find('\0') != std::string_view::npos)
      fail("is no exchange drawing");
    m_rest.remove_prefix(std::min(end + 1, m_rest.size()));
    return trimmed(line);
  }

  void pair(long code, std::string_view value) {
    constexpr long VertexCount = 90;
    constexpr long VertexX = 10;
    if (m_entity == "EOF") fail("goes on behind its end");
    if (value.empty() && isNumber(code)) fail("a number is missing");
    if (code == 0) {
      if (m_vertices != 0) fail("a polyline has other vertices than it says");
      m_entity = value;
    } else if (m_entity == "LWPOLYLINE" && code == VertexCount) {
      if (m_vertices != 0) fail("a polyline counts its vertices twice");
      m_vertices = wholeNumber(value).value_or(-1);
      if (m_vertices < 0) fail("a polyline doesn't count its vertices");
    } else if (m_entity == "LWPOLYLINE" && code == VertexX && --m_vertices < 0) {
      fail("a polyline has more vertices than it says");
    }
  }

  std::string_view m_rest;
  const std::filesystem::path& m_file;
  int m_number = 0;
  std::string_view m_entity;
  long m_vertices = 0;  ///< still to come
};

}  // namespace

void checkExchangeDrawing(std::string_view text, const std::filesystem::path& file) {
  Check(text, file).run();
}

}  // namespace velgrove
