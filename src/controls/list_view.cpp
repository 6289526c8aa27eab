#include "controls/list_view.h"

#include <algorithm>
#include <strings.h>
#include <utility>

#include "controls/faults.h"

namespace velgrove {
namespace {

[[noreturn]] void throwNoRow(int position, int count) {
  throw RunTimeError(Fault::Subscript,
                     "no row " + std::to_string(position) + " in a list of " + std::to_string(count));
}

}  // namespace

const ListView::Row& ListView::row(int position) const {
  if (position < 1 || position > count()) throwNoRow(position, count());
  return m_rows[static_cast<std::size_t>(position) - 1];
}

ListView::Row& ListView::rowToChange(int position) {
  if (position < 1 || position > count()) throwNoRow(position, count());
  return m_rows[static_cast<std::size_t>(position) - 1];
}

void ListView::add(int position, std::string text) {
  if (position < 1 || position > count() + 1) throwNoRow(position, count());
  const auto cleared = m_cleared.extract(text);
  Row added;
  added.Texts[0] = std::move(text);
  added.Identity = cleared.empty() ? ++m_lastIdentity : cleared.mapped();
  m_rows.insert(m_rows.begin() + (position - 1), std::move(added));
  if (m_selected >= position) ++m_selected;
  ++m_revision;
}

void ListView::setText(int position, std::size_t column, std::string text) {
  Row& changed = rowToChange(position);
  if (column >= MaxColumns) throw RunTimeError(Fault::Subscript, "no column " + std::to_string(column));
  if (changed.Texts[column] == text) return;
  changed.Texts[column] = std::move(text);
  ++m_revision;
}

void ListView::setIcon(int position, int icon) {
  if (std::exchange(rowToChange(position).SmallIcon, icon) != icon) ++m_revision;
}

void ListView::remove(int position) {
  if (position < 1 || position > count()) throwNoRow(position, count());
  m_rows.erase(m_rows.begin() + (position - 1));
  if (m_selected == position) m_selected = 0;
  if (m_selected > position) --m_selected;
  ++m_revision;
}

void ListView::clear() {
  if (m_rows.empty()) return;
  m_cleared.clear();
  for (Row& row : m_rows) m_cleared.emplace(std::move(row.Texts[0]), row.Identity);
  m_rows.clear();
  m_selected = 0;
  ++m_revision;
}

int ListView::findItem(const std::string& text) const {
  const auto found = std::ranges::find_if(
      m_rows, [&](const Row& row) { return strcasecmp(row.Texts[0].c_str(), text.c_str()) == 0; });
  return found == m_rows.end() ? 0 : static_cast<int>(found - m_rows.begin()) + 1;
}

void ListView::sort(const std::function<int(const Row&, const Row&)>& compare) {
  const auto before = [&](const Row& a, const Row& b) { return compare(a, b) < 0; };
  if (std::ranges::is_sorted(m_rows, before)) return;
  const unsigned selected = m_selected > 0 ? row(m_selected).Identity : 0;
  std::ranges::stable_sort(m_rows, before);
  if (selected > 0)
    m_selected = static_cast<int>(std::ranges::find(m_rows, selected, &Row::Identity) - m_rows.begin()) + 1;
  ++m_revision;
}

void ListView::select(int position) {
  if (position != 0) (void)row(position);
  if (std::exchange(m_selected, position) != position) ++m_revision;
}

void ListView::ensureVisible(int position) {
  (void)row(position);
  m_visible = {m_visible.back(), position};
  ++m_visibleRequests;
  ++m_revision;
}

}  // namespace velgrove
