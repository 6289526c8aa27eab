#pragma once

#include <string>

#include "controls/serial_line.h"

namespace velgrove {

/// The box's end of a pseudo-terminal; a desk opens the other end by its path. The box never holds that other
/// end, so that closing this one looks to the desk like a pulled plug.
class BoxTerminal {
 public:
  BoxTerminal() = default;
  ~BoxTerminal() { close(); }
  BoxTerminal(const BoxTerminal&) = delete;
  BoxTerminal& operator=(const BoxTerminal&) = delete;

  /// Makes a new pseudo-terminal, raw and without echo; a RunTimeError when the machine gives none.
  void open();
  void close();
  [[nodiscard]] bool isOpen() const { return m_descriptor >= 0; }

  [[nodiscard]] int descriptor() const { return m_descriptor; }
  /// Where a desk opens it.
  [[nodiscard]] const std::string& path() const { return m_path; }

  /// Gone means that no desk has the other end open. A terminal that no desk has opened yet is Full.
  [[nodiscard]] LineResult read(std::span<std::uint8_t> into) const;
  [[nodiscard]] LineResult write(std::span<const std::uint8_t> bytes) const;

  /// After the desk has gone: true if it died without giving up its exclusive hold, which then stays on the
  /// terminal and keeps every other desk out.
  [[nodiscard]] bool isShut() const;

 private:
  int m_descriptor = -1;
  std::string m_path;
};

}  // namespace velgrove
