// The rows of a cue list as the toolkit asks for them.

#include <algorithm>

#include "desktop/cue_table.h"
#include "desktop/theme.h"

namespace velgrove {

void CueRows::show(const std::vector<ListView::Column>& columns, const std::vector<ListView::Row>& rows) {
  if (m_columns.size() != columns.size()) {
    beginResetModel();
    m_columns = columns;
    m_rows = rows;
    endResetModel();
    return;
  }
  const auto same = [](const ListView::Row& a, const ListView::Row& b) { return a.Identity == b.Identity; };
  const auto shorter = std::min(m_rows.size(), rows.size());
  std::size_t head = 0;
  while (head < shorter && same(m_rows[head], rows[head])) ++head;
  std::size_t tail = 0;
  while (tail < shorter - head && same(m_rows[m_rows.size() - 1 - tail], rows[rows.size() - 1 - tail]))
    ++tail;
  replaceMiddle(static_cast<int>(head), static_cast<int>(m_rows.size() - head - tail),
                static_cast<int>(rows.size() - head - tail), rows);
  for (std::size_t r = 0; r < rows.size(); ++r) {
    if (m_rows[r].Texts == rows[r].Texts && m_rows[r].SmallIcon == rows[r].SmallIcon) continue;
    m_rows[r] = rows[r];
    const int changed = static_cast<int>(r);
    emit dataChanged(index(changed, 0), index(changed, columnCount() - 1));
  }
}

void CueRows::replaceMiddle(int first, int removed, int inserted, const std::vector<ListView::Row>& rows) {
  if (removed > 0) {
    beginRemoveRows({}, first, first + removed - 1);
    m_rows.erase(m_rows.begin() + first, m_rows.begin() + first + removed);
    endRemoveRows();
  }
  if (inserted > 0) {
    beginInsertRows({}, first, first + inserted - 1);
    m_rows.insert(m_rows.begin() + first, rows.begin() + first, rows.begin() + first + inserted);
    endInsertRows();
  }
}

int CueRows::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int CueRows::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant CueRows::data(const QModelIndex& index, int role) const {
  if (role == Qt::DisplayRole)
    return QString::fromStdString(row(index.row()).Texts[static_cast<std::size_t>(index.column())]);
  if (role == Qt::AccessibleTextRole && index.column() == 0) return spokenNumber(index.row());
  if (role == Qt::TextAlignmentRole) return alignment(index.column()).toInt();
  if (role == Qt::SizeHintRole) return QSize(0, m_rowHeight);
  return {};
}

/// "12.00, stage, looping"
QString CueRows::spokenNumber(int at) const {
  QString words = QString::fromStdString(row(at).Texts.front());
  if (const auto mark = m_marks.find(at); mark != m_marks.end()) words += ", " + mark->second;
  if (row(at).SmallIcon == QueueList::LoopIcon) words += ", looping";
  return words;
}

void CueRows::setSpokenMarks(std::map<int, QString> marks) {
  if (marks == m_marks) return;
  const auto before = std::exchange(m_marks, std::move(marks));
  for (const auto* side : {&before, &std::as_const(m_marks)})
    for (const auto& [at, words] : *side)
      if (at < rowCount()) emit dataChanged(index(at, 0), index(at, 0), {Qt::AccessibleTextRole});
}

void CueRows::setRowHeight(int pixels) {
  if (m_rowHeight == pixels) return;
  m_rowHeight = pixels;
  emit layoutChanged();
}

QVariant CueRows::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::DisplayRole)
    return QString::fromStdString(m_columns[static_cast<std::size_t>(section)].Header).trimmed();
  if (role == Qt::TextAlignmentRole) return alignment(section).toInt();
  return {};
}

Qt::Alignment CueRows::alignment(int column) {
  return Qt::AlignVCenter | (column < FirstTextColumn ? Qt::AlignRight : Qt::AlignLeft);
}

}  // namespace velgrove
