#include "plot/shape_file.h"

#include <array>
#include <charconv>
#include <cmath>
#include <optional>

#include "controls/numbers.h"

namespace velgrove {
namespace {

constexpr std::string_view FirstLine = "velgrove shape 1";
constexpr double Largest = 1e6;  // of a coordinate; beyond it a drawing is no symbol but a mistake

// ---- Writing

void write(std::string& text, double number) {
  constexpr int Digits = 7;
  std::array<char, 32> buffer{};
  const double plain = number == 0 ? 0 : number;  // no "-0"
  const auto end =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), plain, std::chars_format::general, Digits);
  text += ' ';
  text.append(buffer.data(), end.ptr);
}

void write(std::string& text, Point point) {
  write(text, point.x);
  write(text, point.y);
}

struct Writer {
  std::string& text;

  void operator()(const Polyline& line) const {
    text += line.closed ? "polygon" : "polyline";
    for (const Point& point : line.points) write(text, point);
  }
  void operator()(const Circle& circle) const {
    text += "circle";
    write(text, circle.middle);
    write(text, circle.radius);
  }
  void operator()(const Arc& arc) const {
    text += "arc";
    write(text, arc.middle);
    for (const double number : {arc.radius, arc.from, arc.to}) write(text, number);
  }
};

// ---- Reading

class Reader {
 public:
  Reader(std::string_view text, const std::filesystem::path& file) : m_rest(text), m_file(file) {}

  std::shared_ptr<const Block> block() {
    if (line() != FirstLine) fail("is no shape file");
    if (word(line()) != "group") fail("has no group");
    std::string name(m_line);
    std::vector<Primitive> primitives;
    for (std::string_view kind = word(line()); kind != "end"; kind = word(line()))
      primitives.push_back(primitive(kind));
    if (!m_rest.empty()) fail("goes on behind its end");
    if (primitives.empty()) fail("holds nothing to draw");
    return makeBlock(std::move(name), std::move(primitives));
  }

 private:
  [[noreturn]] void fail(const std::string& reason) const {
    throw RunTimeError(Fault::File, m_file.string() + ": line " + std::to_string(m_number) + ": " + reason);
  }

  /// The next line, which `word` and `numbers` then take apart.
  std::string_view line() {
    ++m_number;
    const auto end = m_rest.find('\n');
    if (end == std::string_view::npos) fail("is cut off");
    m_line = m_rest.substr(0, end);
    m_rest.remove_prefix(end + 1);
    return m_line;
  }

  /// Takes the first word off a line; the rest stays in `m_line`.
  std::string_view word(std::string_view from) {
    const auto end = std::min(from.find(' '), from.size());
    m_line = from.substr(std::min(end + 1, from.size()));
    return from.substr(0, end);
  }

  std::vector<double> numbers() {
    std::vector<double> numbers;
    while (!m_line.empty()) {
      const std::string_view text = word(m_line);
      try {
        numbers.push_back(toNumber(text));
      } catch (const RunTimeError&) {
        fail("\"" + std::string(text) + "\" is no number");
      }
      if (!(std::abs(numbers.back()) <= Largest)) fail("a number is too large");
    }
    return numbers;
  }

  Primitive primitive(std::string_view kind) {
    const std::vector<double> n = numbers();
    if (kind == "polygon" || kind == "polyline") {
      if (n.size() < 4 || n.size() % 2 != 0) fail("a chain of lines has an odd end");
      Polyline chain{.points = {}, .closed = kind == "polygon"};
      for (std::size_t i = 0; i < n.size(); i += 2) chain.points.push_back({.x = n[i], .y = n[i + 1]});
      return chain;
    }
    if (kind == "circle" && n.size() == 3 && n[2] > 0)
      return Circle{.middle = {.x = n[0], .y = n[1]}, .radius = n[2]};
    if (kind == "arc" && n.size() == 5 && n[2] > 0 && n[4] > n[3] && n[4] - n[3] <= 360)
      return Arc{.middle = {.x = n[0], .y = n[1]}, .radius = n[2], .from = n[3], .to = n[4]};
    fail("is damaged");
  }

  std::string_view m_rest;
  const std::filesystem::path& m_file;
  std::string_view m_line;
  int m_number = 0;
};

}  // namespace

std::string shapeText(const Block& block) {
  std::string text = std::string(FirstLine) + "\ngroup " + block.name + "\n";
  for (const Primitive& primitive : block.primitives) {
    std::visit(Writer{text}, primitive);
    text += '\n';
  }
  return text + "end\n";
}

std::shared_ptr<const Block> blockOfShapeText(std::string_view text, const std::filesystem::path& file) {
  return Reader(text, file).block();
}

}  // namespace velgrove
