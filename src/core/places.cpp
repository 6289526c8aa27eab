#include "core/places.h"

#include <cstdlib>
#include <system_error>

#include "controls/files.h"
#include "model/settings_store.h"

namespace velgrove {
namespace {

namespace fs = std::filesystem;

bool isFolder(const fs::path& path) {
  std::error_code missing;
  return fs::is_directory(path, missing);
}

fs::path userData(const PlaceHints& hints) {
  const fs::path given = hints.dataHome;
  return (given.is_absolute() ? given : fs::path(hints.home) / ".local" / "share") / "velgrove";
}

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

}  // namespace

Places placesFor(const PlaceHints& hints) {
  const fs::path application = hints.executable.parent_path();
  const fs::path graphics = application / "graphics";
  const fs::path data = application / "data";
  const fs::path share = application.parent_path() / "share";
  const fs::path ours = share / "velgrove";
  const fs::path manual = share / "manual";
  const bool onAStick = canWriteIn(data);
  return {.application = application,
          .graphics = isFolder(graphics) ? graphics : ours / "graphics",
          .manual = isFolder(manual) ? manual : ours / "manual",
          .data = onAStick ? data : userData(hints),
          .firstShows = onAStick ? fs::path() : ours / "shows",
          .settings = settingsPath(hints.configHome.c_str(), hints.home.c_str()).parent_path()};
}

Places thisProcessPlaces() {
  std::error_code hidden;  // then everything is looked for from the current folder
  return placesFor({.executable = fs::read_symlink("/proc/self/exe", hidden),
                    .home = variable("HOME"),
                    .dataHome = variable("XDG_DATA_HOME"),
                    .configHome = variable("XDG_CONFIG_HOME")});
}

}  // namespace velgrove
