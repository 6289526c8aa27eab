#pragma once

#include "controls/widgets.h"

namespace velgrove {

/// A row of tabs, counted from 1. Only the hand raises Click.
class TabStrip {
 public:
  explicit TabStrip(std::vector<std::string> captions) : m_captions(std::move(captions)) {}

  Event Click;

  [[nodiscard]] const std::vector<std::string>& captions() const { return m_captions; }
  [[nodiscard]] int selected() const { return m_selected; }
  /// Fault::Subscript when there is no such tab.
  void select(int tab) {
    if (tab < 1 || tab > static_cast<int>(m_captions.size()))
      throw RunTimeError(Fault::Subscript, "no tab " + std::to_string(tab));
    m_selected = tab;
  }
  /// The operator's choice.
  void choose(int tab) {
    select(tab);
    raise(Click);
  }

 private:
  std::vector<std::string> m_captions;
  int m_selected = 1;
};

}  // namespace velgrove
