// Any bytes as an exchange drawing and as a shape file: refused in words, or a block whose shape file gives
// it back.

#include <cmath>

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

void preparesWell(const Block& block) {
  const Extents& around = block.extents;
  require(std::isfinite(around.width()) && std::isfinite(around.height()), "a block has a size");
  const std::string text = shapeText(block);
  const BlockRef again = blockOf([&] { return blockOfShapeText(text, "again.cad"); });
  require(again != nullptr, "a shape file that was written can be read");
  require(shapeText(*again) == text, "a second write gives the same text");
}

void read(std::string_view bytes) {
  if (const auto shape = blockOf([&] { return blockOfShapeText(bytes, "input.cad"); })) preparesWell(*shape);
  const auto file = fileOf(bytes, "input.dxf");
  if (const auto drawn = blockOf([&] { return importExchangeDrawing(file); })) preparesWell(*drawn);
}

}  // namespace
}  // namespace velgrove::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  velgrove::fuzz::read(velgrove::fuzz::textOf(data, size));
  return 0;
}
