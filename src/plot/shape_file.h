#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "controls/block.h"

namespace velgrove {

/// The text of a shape file (.cad): one group of primitives, a line each. The same block always gives the
/// same bytes. Numbers keep seven digits.
[[nodiscard]] std::string shapeText(const Block& block);

/// The block that a shape file holds. Fault::File, with the file's path and the line, when it is damaged, cut
/// off or empty.
[[nodiscard]] std::shared_ptr<const Block> blockOfShapeText(std::string_view text,
                                                            const std::filesystem::path& file);

}  // namespace velgrove
