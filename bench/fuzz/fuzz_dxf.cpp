// Any bytes as an exchange drawing and as a shape file: refused in words, or a block whose shape file gives
// it back.

#include <cmath>
#include <sstream>

#include "controls/faults.h"
#include "fuzz.h"
#include "plot/dxf_import.h"
#include "plot/shape_file.h"

namespace velgrove::fuzz {
namespace {

using BlockRef = std::shared_ptr<const Block>;

template <class Read>
BlockRef blockOf(const Read& read) {
  try {
    return read();
  } catch (const RunTimeError& error) {
    require(error.fault() == Fault::File, "a refusal is a fault of the file");
    return nullptr;
  }
}

void hasASize(const Block& block) {
  const Extents& around = block.extents;
  require(std::isfinite(around.width()) && std::isfinite(around.height()), "a block has a size");
}

void preparesWell(const Block& block) {
  const std::string text = shapeText(block);
  const BlockRef again = blockOf([&] { return blockOfShapeText(text, "again.cad"); });
  require(again != nullptr, "a shape file that was written can be read");
  require(shapeText(*again) == text, "a second write gives the same text");
}

/// A drawing from its pairs; a word without "=" has the code 0.
std::string drawingOf(std::string_view words) {
  std::istringstream all{std::string(words)};
  std::string drawing;
  for (std::string word; all >> word;) {
    const auto equals = word.find('=');
    const bool coded = equals != std::string::npos;
    drawing +=
        (coded ? word.substr(0, equals) : "0") + "\n" + (coded ? word.substr(equals + 1) : word) + "\n";
  }
  return drawing + "0\nEOF\n";
}

void read(std::string_view bytes) {
  if (bytes.starts_with('=')) return read(drawingOf(bytes.substr(1)));
  if (const auto shape = blockOf([&] { return blockOfShapeText(bytes, "input.cad"); })) hasASize(*shape);
  const auto file = fileOf(bytes, "input.dxf");
  const auto drawn = blockOf([&] { return importExchangeDrawing(file); });
  if (drawn == nullptr) return;
  hasASize(*drawn);
  preparesWell(*drawn);
}

}  // namespace
}  // namespace velgrove::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  velgrove::fuzz::read(velgrove::fuzz::textOf(data, size));
  return 0;
}
