#include "core/recovery_folder.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <ctime>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace velgrove {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view FirstLine = "Velgrove recovery copy 1\n";
constexpr int MostDesks = 16;  // on one machine

// ---- The file: each text has its length before it, since a path may hold whatever it likes

std::string field(std::string_view name, const std::string& text) {
  return std::string(name) + " " + std::to_string(text.size()) + "\n" + text + "\n";
}

bool skip(std::string_view& bytes, std::string_view expected) {
  if (!bytes.starts_with(expected)) return false;
  bytes.remove_prefix(expected.size());
  return true;
}

std::optional<std::string> readField(std::string_view& bytes, std::string_view name) {
  std::size_t length = 0;
  if (!skip(bytes, name) || !skip(bytes, " ")) return {};
  const auto [end, error] = std::from_chars(bytes.data(), bytes.data() + bytes.size(), length);
  if (error != std::errc()) return {};
  bytes.remove_prefix(static_cast<std::size_t>(end - bytes.data()));
  if (!skip(bytes, "\n") || length > bytes.size()) return {};
  const std::string text(bytes.substr(0, length));
  bytes.remove_prefix(length);
  if (!skip(bytes, "\n")) return {};
  return text;
}

// ---- The folder

[[noreturn]] void fail(const fs::path& path, int error) {
  throw RunTimeError(Fault::File, path.string() + ": " + std::generic_category().message(error));
}

fs::path copyOf(const fs::path& folder, int number) {
  return folder / (std::to_string(number) + ".kel");
}

bool isThere(const fs::path& path) {
  std::error_code hidden;
  return fs::exists(path, hidden);
}

/// "declined.kel", "declined-2.kel", ...
fs::path freeName(const fs::path& folder, const std::string& name) {
  fs::path free = folder / (name + ".kel");
  for (int number = 2; isThere(free); ++number)
    free = folder / (name + "-" + std::to_string(number) + ".kel");
  return free;
}

std::time_t changed(const fs::path& path) {
  struct stat there {};
  return ::stat(path.c_str(), &there) == 0 ? there.st_mtime : 0;
}

std::string timeText(std::time_t time) {
  std::tm local{};
  std::array<char, 32> text{};
  ::localtime_r(&time, &local);
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M", &local)};
}

/// A show that is new, or lies on a stick that isn't plugged in.
std::optional<std::string> readIfThere(const fs::path& file) {
  try {
    return readFile(file);
  } catch (const RunTimeError&) {
    return {};
  }
}

FoundCopy look(std::shared_ptr<RecoverySlot> slot) {
  FoundCopy found{.slot = std::move(slot)};
  const fs::path& path = found.slot->copy();
  found.made = timeText(changed(path));
  try {
    found.bytes = readFile(path);
  } catch (const RunTimeError& error) {
    found.fault = error.what();
    found.unread = true;
    return found;
  }
  found.copy = readCopy(found.bytes);
  if (!found.copy) {
    found.fault = path.string() + ": not a recovery copy";
    return found;
  }
  found.inFile = readIfThere(found.copy->file);
  found.fileIsNewer = changed(found.copy->file) > changed(path);
  return found;
}

}  // namespace

std::string writeCopy(const RecoveryCopy& copy) {
  return std::string(FirstLine) + field("file", copy.file) + field("name", copy.name) + copy.show;
}

std::optional<RecoveryCopy> readCopy(std::string_view bytes) {
  if (!skip(bytes, FirstLine)) return {};
  const auto file = readField(bytes, "file");
  const auto name = readField(bytes, "name");
  if (!file || !name) return {};
  return RecoveryCopy{.file = *file, .name = *name, .show = std::string(bytes)};
}

std::shared_ptr<RecoverySlot> RecoverySlot::take(const fs::path& folder, int number) {
  const fs::path path = folder / (std::to_string(number) + ".lock");
  constexpr mode_t Owner = 0600;
  const int lock = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, Owner);
  if (lock < 0) fail(path, errno);
  auto slot = std::make_shared<RecoverySlot>(copyOf(folder, number), lock);
  if (::flock(lock, LOCK_EX | LOCK_NB) == 0) return slot;
  if (errno != EWOULDBLOCK) fail(path, errno);
  return nullptr;
}

RecoverySlot::~RecoverySlot() {
  ::close(m_lock);
}

RecoveryFolder::RecoveryFolder(fs::path folder, Disk disk)
    : m_folder(std::move(folder)), m_disk(std::move(disk)) {}

std::vector<FoundCopy> RecoveryFolder::find() const {
  std::vector<FoundCopy> found;
  for (int number = 1; number <= MostDesks; ++number) {
    if (!isThere(copyOf(m_folder, number))) continue;
    auto slot = RecoverySlot::take(m_folder, number);
    // Another desk that starts at this moment may have dealt with it.
    if (slot != nullptr && isThere(slot->copy())) found.push_back(look(std::move(slot)));
  }
  return found;
}

/// Not one with a copy in it: that of a desk that has ended since this one began is for the next start.
std::shared_ptr<RecoverySlot> RecoveryFolder::freeSlot() const {
  for (int number = 1; number <= MostDesks; ++number) {
    auto slot = isThere(copyOf(m_folder, number)) ? nullptr : RecoverySlot::take(m_folder, number);
    if (slot != nullptr && !isThere(slot->copy())) return slot;
  }
  fail(m_folder, EBUSY);
}

void RecoveryFolder::write(const std::string& bytes) {
  std::error_code error;
  fs::create_directories(m_folder, error);
  if (error) fail(m_folder, error.value());
  if (m_slot == nullptr) m_slot = freeSlot();
  writeFileSafely(m_slot->copy(), bytes, Backup::None, m_disk);
}

void RecoveryFolder::remove() const {
  if (m_slot != nullptr) remove(*m_slot);
}

void RecoveryFolder::remove(const RecoverySlot& slot) {
  std::error_code error;
  fs::remove(slot.copy(), error);
  if (error) fail(slot.copy(), error.value());
}

void RecoveryFolder::setAside(const FoundCopy& found, const char* name) const {
  const fs::path aside = freeName(m_folder, name);
  if (found.copy) {
    writeFileSafely(aside, found.copy->show, Backup::None, m_disk);
    remove(*found.slot);
  } else {
    std::error_code error;
    fs::rename(found.slot->copy(), aside, error);
    if (error) fail(aside, error.value());
  }
}

}  // namespace velgrove
