#pragma once

#include <QMdiSubWindow>
#include <functional>

#include "controls/form.h"
#include "desktop/binding.h"

namespace velgrove {

/// A window inside the frame, tied to its form: caption, visible, enabled, minimised, to the front.
class ChildWindow : public QMdiSubWindow {
  Q_OBJECT

 public:
  using FindForm = std::function<Form*()>;

  /// `close` is what the close box does; it runs with the desk held.
  ChildWindow(QWidget* content, Face& face, FindForm find, std::function<void()> close);
  /// The form's size is that of the window's inside, and the content tells it.
  void leavePlaceToContent() { m_notesPlace = false; }

 signals:
  void movedByHand();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct Look {
    unsigned identity = 0;
    std::string caption;
    bool visible = false;
    bool enabled = true;
    WindowState state = WindowState::Normal;
    QRect place;
    unsigned fronts = 0;
    friend bool operator==(const Look&, const Look&) = default;
  };

  void show(const Look& look);
  void obey(const Look& look);
  void noteGeometry();

  FindForm m_find;
  std::function<void()> m_close;
  Bindings m_bindings;
  Bindings::Shown<Look> m_look;
  Look m_shown;
  bool m_writing = false;
  bool m_notesPlace = true;
  QRect m_pressed;
};

}  // namespace velgrove
