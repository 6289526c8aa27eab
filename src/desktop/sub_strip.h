#pragma once

#include <QScrollArea>
#include <array>

#include "core/lighting_desk.h"
#include "desktop/binding.h"
#include "desktop/sub_cell.h"

namespace velgrove {

/// The strip of the submasters at the foot of the frame, frmSubPane. One that is wider than the frame
/// scrolls. For Tab it is one stop, in which the arrow keys go on.
class SubStrip : public QScrollArea {
  Q_OBJECT

 public:
  SubStrip(LightingDesk& desk, Bindings& bindings);

  [[nodiscard]] QRect button(int index) const;  ///< in the screen's pixels

 signals:
  void heightChanged();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void layOut();
  void bind(int index, frmSubPane& panel, const ShowState& show, Bindings& bindings);
  void makeCurrent(int index);
  void fit();

  std::array<SubCell*, frmSubPane::Count> m_cells{};
  int m_current = 0;  ///< has the focus, or gets it next
};

}  // namespace velgrove
