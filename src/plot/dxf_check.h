#pragma once

#include <filesystem>
#include <string_view>

namespace velgrove {

/// Looks through an exchange drawing (DXF, as text) for what its reader takes on trust: pairs of a group code
/// and a value from the first line to the end mark, lines of a length that it can hold, and vertex counts
/// that are true. Fault::File, with the file's path, the line and the reason, for any other file.
void checkExchangeDrawing(std::string_view text, const std::filesystem::path& file);

}  // namespace velgrove
