#pragma once

#include <filesystem>
#include <memory>

#include "controls/block.h"

namespace velgrove {

/// Reads an exchange drawing (DXF, as text) as one block, named like the file. Lines, polylines with their
/// arcs, circles, arcs and inserts of blocks come in; texts don't, because the desk writes on a symbol
/// itself, nor does what is neither flat nor made of these. Fault::File, with the file's path, when the file
/// is missing, no such drawing or cut off, and when nothing of it can be drawn.
[[nodiscard]] std::shared_ptr<const Block> importExchangeDrawing(const std::filesystem::path& file);

}  // namespace velgrove
