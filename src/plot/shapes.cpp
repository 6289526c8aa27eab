#include "plot/shapes.h"

#include <system_error>

#include "controls/files.h"
#include "plot/dxf_import.h"
#include "plot/shape_file.h"

namespace velgrove {
namespace {

namespace fs = std::filesystem;

bool isAsNew(const fs::path& shape, const fs::path& drawing) {
  std::error_code missing;
  const auto made = fs::last_write_time(shape, missing);
  if (missing) return false;
  const auto drawn = fs::last_write_time(drawing, missing);
  return !missing && made >= drawn;
}

}  // namespace

fs::path graphicsFolder(const fs::path& applicationFolder) {
  const fs::path beside = applicationFolder / "graphics";
  const fs::path installed = applicationFolder / "../share/velgrove/graphics";
  std::error_code ignored;
  return !fs::is_directory(beside, ignored) && fs::is_directory(installed, ignored)
             ? installed.lexically_normal()
             : beside;
}

void prepareShape(const fs::path& graphics, const std::string& name) {
  const fs::path drawing = graphics / (name + ".dxf");
  const fs::path shape = graphics / (name + ".cad");
  if (isAsNew(shape, drawing)) return;
  std::error_code missing;
  if (fs::exists(shape, missing) && !canWriteIn(graphics)) return;
  writeFileSafely(shape, shapeText(*importExchangeDrawing(drawing)), Backup::None);
}

std::shared_ptr<const Block> loadShape(const fs::path& graphics, const std::string& name) {
  const fs::path shape = graphics / (name + ".cad");
  return blockOfShapeText(readFile(shape), shape);
}

void onShapeFile(Machine& machine, const std::function<void()>& work) {
  std::string failure;
  machine.errors.run([&] {
    failure.clear();
    try {
      machine.aside(work);
    } catch (const RunTimeError& error) {
      failure = error.what();
      throw;
    }
  });
  if (!failure.empty()) machine.boxes.show({.text = failure, .icon = BoxIcon::Critical});
}

}  // namespace velgrove
