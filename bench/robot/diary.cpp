#include "robot/diary.h"

#include <algorithm>
#include <cctype>
#include <iomanip>
#include <ostream>

namespace velgrove::robot {
namespace {

bool isDigit(char letter) {
  return std::isdigit(static_cast<unsigned char>(letter)) != 0;
}

/// Without the folder of this run, with # for each number, on one line.
std::string alike(std::string text, const std::string& folder) {
  for (auto at = text.find(folder); at != std::string::npos; at = text.find(folder))
    text.replace(at, folder.size(), "FOLDER");
  std::string kept;
  for (const char letter : text) {
    if (isDigit(letter)) {
      if (!kept.ends_with('#')) kept += '#';
    } else {
      kept += letter == '\n' ? '|' : letter;
    }
  }
  constexpr std::size_t Enough = 110;
  return kept.substr(0, Enough);
}

void printTable(std::ostream& out, const char* title, const std::map<std::string, int>& table) {
  out << title << "\n";
  for (const auto& [text, count] : table) out << std::setw(8) << count << "  " << text << "\n";
}

}  // namespace

void Diary::beginStep(int number) {
  m_step = number;
  m_lines.emplace_back();
  if (m_lines.size() > Remembered) m_lines.pop_front();
}

void Diary::note(const std::string& line) {
  if (m_lines.empty()) m_lines.emplace_back();
  m_lines.back() += (m_lines.back().empty() ? "" : "; ") + line;
  if (m_from > 0 && m_step >= m_from) m_out << m_step << ": " << line << std::endl;  // a crash loses no line
}

void Diary::noteBox(const std::string& title, const std::string& text, const std::string& folder) {
  constexpr const char* SystemError = "SYSTEM ERROR";
  ++m_boxes[title == SystemError ? title + " at: " + m_deed : alike(title + ": " + text, folder)];
}

void Diary::printLastSteps() const {
  int number = m_step - static_cast<int>(m_lines.size());
  for (const std::string& line : m_lines) m_out << "  " << ++number << ": " << line << "\n";
}

void Diary::printTables() const {
  printTable(m_out, "boxes", m_boxes);
  printTable(m_out, "steps, and what came of them", m_counts);
}

}  // namespace velgrove::robot
