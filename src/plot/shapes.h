#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include "controls/block.h"
#include "controls/machine.h"

namespace velgrove {

/// The longer side of every shape on the plot, world units: room for two lines of text.
inline constexpr double CommonSize = 80;

/// The folder of shapes and cursors: beside the executable, or in the share folder of an installation. The
/// first of them when there is neither, so that an error names where to look.
[[nodiscard]] std::filesystem::path graphicsFolder(const std::filesystem::path& applicationFolder);

/// Makes the shape file (.cad) of a shape from its exchange drawing (.dxf). One that is as new as the drawing
/// stays as it is, and so does any in a folder that can't be written: an installed desk plays with the shapes
/// that it has. Fault::File with the file's path.
void prepareShape(const std::filesystem::path& graphics, const std::string& name);

/// The block of a shape file. Fault::File with the file's path.
[[nodiscard]] std::shared_ptr<const Block> loadShape(const std::filesystem::path& graphics,
                                                     const std::string& name);

/// Runs work on a shape's file, aside from the desk, under the error pattern. When it failed for good a
/// second box names the file, because the first doesn't.
void onShapeFile(Machine& machine, const std::function<void()>& work);

}  // namespace velgrove
