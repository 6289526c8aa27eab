#include "core/recent_list.h"

#include <algorithm>

namespace velgrove {
void readRecentList(ShowState& show, const std::string& text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    std::string line = text.substr(at, end - at);
    if (line.ends_with('\r')) line.pop_back();
    const auto index = static_cast<std::size_t>(show.MRUCount);
    if (index >= show.MRUList.size())
      throw RunTimeError(Fault::Subscript, "the recent list has too many lines");
    show.MRUList[index] = std::move(line);
    ++show.MRUCount;
    at = end + 1;
  }
}

void noteRecentFile(ShowState& show) {
  auto& list = show.MRUList;
  auto* const listed = list.begin() + show.MRUCount;
  auto* old = std::find(list.begin(), listed, show.ProjectFileName);
  if (old == listed) old = list.begin() + (RecentFilesUsed - 1);
  std::move_backward(list.begin(), old, old + 1);
  list.front() = show.ProjectFileName;
}

std::string recentListText(const ShowState& show) {
  std::string text;
  for (std::size_t i = 0; i < RecentFilesUsed && !show.MRUList[i].empty(); ++i)
    if (show.MRUList[i].find('\n') == std::string::npos) text += show.MRUList[i] + "\r\n";
  return text;
}

}  // namespace velgrove
