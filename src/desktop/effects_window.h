#pragma once

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

#include "desktop/binding.h"
#include "desktop/list_table.h"
#include "playback/effects_queue.h"

namespace velgrove {

/// The window of the effects: their list on top, what the next one will be, and what is done with them.
class EffectsWindow : public QWidget {
  Q_OBJECT

 public:
  EffectsWindow(Face& face, EffectsQueue& effects);

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void dress();
  void bindControls(EffectsQueue& effects);
  void layOut();

  ListTable m_list;
  QComboBox m_choice;
  // The group goes after what stands in it.
  QGroupBox m_custom;
  QLabel m_startCaption, m_stopCaption, m_speedCaption, m_loopsCaption;
  Field m_start, m_stop, m_speed, m_loops;
  QPushButton m_add, m_remove, m_test;
  Bindings m_bindings;
};

}  // namespace velgrove
