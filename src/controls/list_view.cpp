#include "controls/list_view.h"

#include <algorithm>
#include <strings.h>

#include "controls/faults.h"

namespace velgrove {
namespace {

[[noreturn]] void throwNoRow(int position, int count) {
  throw RunTimeError(Fault::Subscript,
                     "no row " + std::to_string(position) + " in a list of " + std::to_string(count));
}

}  // namespace

ListView::Row& ListView::row(int position) {
  if (position < 1 || position > count()) throwNoRow(position, count());
  return m_rows[static_cast<std::size_t>(position) - 1];
}

const ListView::Row& ListView::row(int position) const {
  if (position < 1 || position > count()) throwNoRow(position, count());
  return m_rows[static_cast<std::size_t>(position) - 1];
}

ListView::Row& ListView::add(int position, std::string text) {
  if (position < 1 || position > count() + 1) throwNoRow(position, count());
  const auto added = m_rows.insert(m_rows.begin() + (position - 1), Row{});
  added->Texts[0] = std::move(text);
  if (m_selected >= position) ++m_selected;
  return *added;
}

void ListView::remove(int position) {
  if (position < 1 || position > count()) throwNoRow(position, count());
  m_rows.erase(m_rows.begin() + (position - 1));
  if (m_selected == position) m_selected = 0;
  if (m_selected > position) --m_selected;
}

void ListView::clear() {
  m_rows.clear();
  m_selected = 0;
}

int ListView::findItem(const std::string& text) const {
  const auto found = std::ranges::find_if(
      m_rows, [&](const Row& row) { return strcasecmp(row.Texts[0].c_str(), text.c_str()) == 0; });
  return found == m_rows.end() ? 0 : static_cast<int>(found - m_rows.begin()) + 1;
}

void ListView::sort(const std::function<int(const Row&, const Row&)>& compare) {
  std::ranges::stable_sort(m_rows, [&](const Row& a, const Row& b) { return compare(a, b) < 0; });
}

void ListView::select(int position) {
  if (position != 0) (void)row(position);
  m_selected = position;
}

void ListView::ensureVisible(int position) {
  (void)row(position);
  m_visible = position;
}

}  // namespace velgrove
