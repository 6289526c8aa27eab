#pragma once

#include <filesystem>

namespace velgrove {

/// On the first evening with an installed desk its user has no folder of shows. It is made, with copies of
/// those that came with the desk, so that there is something to open. One that is there already is left
/// alone, whatever it holds. Fault::File when a show can't be copied; without a folder there is nothing to
/// copy into, and whoever goes there says why.
void bringFirstShows(const std::filesystem::path& from, const std::filesystem::path& data);

}  // namespace velgrove
