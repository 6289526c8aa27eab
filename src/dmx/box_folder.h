#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace velgrove {

/// Where virtual boxes register: one symbolic link a box, named like the box, to its terminal. A running box
/// holds a lock file beside its link, so that a link left by a crash is told from a living one even when its
/// terminal has got another owner since.
///
/// `$XDG_RUNTIME_DIR/velgrove/boxes`, or `/tmp/velgrove-<uid>/boxes` when that variable isn't set.
[[nodiscard]] std::filesystem::path virtualBoxFolder();

/// Whether what stands in the folder can be trusted. Everybody may write to `/tmp`, so a folder
/// `velgrove-<uid>/boxes` counts only if both are directories of the user, shut to all others (mode 0700),
/// and no links.
[[nodiscard]] bool isTrustedBoxFolder(const std::filesystem::path& folder);

/// The lock file of a box of that name; never listed as a box.
[[nodiscard]] std::filesystem::path boxLockFile(const std::filesystem::path& folder, const std::string& name);

/// The links of the boxes that stand there, by name. Dangling links and those of crashed boxes don't count.
[[nodiscard]] std::vector<std::filesystem::path> registeredBoxes(const std::filesystem::path& folder);

/// What a folder holds, in no order; nothing when it can't be read.
[[nodiscard]] std::vector<std::filesystem::path> entriesOf(const std::filesystem::path& folder);

}  // namespace velgrove
