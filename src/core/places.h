#pragma once

#include <filesystem>
#include <string>

namespace velgrove {

/// Where the desk's own files lie on a machine.
struct Places {
  std::filesystem::path application;  ///< folder of the executable
  std::filesystem::path graphics;     ///< shapes and cursors
  std::filesystem::path manual;       ///< the help's pages; there may be none
  std::filesystem::path data;         ///< new shows and the recent list; made at the first save
  std::filesystem::path firstShows;   ///< that an installed desk brings to a new user; empty: none
  std::filesystem::path settings;     ///< the settings' files; made at the first change
};

/// What the places follow from.
struct PlaceHints {
  std::filesystem::path executable;
  std::string home;        ///< $HOME
  std::string dataHome;    ///< $XDG_DATA_HOME; ignored unless absolute, as the standard has it
  std::string configHome;  ///< $XDG_CONFIG_HOME, likewise
};

/// Graphics and data stand beside the executable where there are such folders, as in a copy on a stick. Else
/// graphics are in the share folder of the installation, and data in the user's own folder. The manual stands
/// in the build's share folder, or in that of the installation.
[[nodiscard]] Places placesFor(const PlaceHints& hints);

/// The places of this process.
[[nodiscard]] Places thisProcessPlaces();

}  // namespace velgrove
