#pragma once

#include <QDialog>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScrollArea>
#include <functional>

#include "controls/form.h"
#include "desktop/binding.h"

namespace velgrove {

/// A window of its own, tied to its form: caption, visible, modal, to the front.
class FormDialog : public QDialog {
  Q_OBJECT

 public:
  /// The form lives as long as the desk. `close` is what the close box and Escape do; it runs with the desk
  /// held.
  FormDialog(const QString& name, QWidget* above, Face& face, Form& form, std::function<void()> close,
             Qt::WindowFlags flags = Qt::Dialog);

 protected:
  [[nodiscard]] Bindings& bindings() { return m_bindings; }
  /// The dialog is about to come up: takes its size and place, so that it is never seen elsewhere.
  virtual void takePlace() {}
  /// The dialog comes up: takes the focus to its place. That is the default button, when it has no better.
  virtual void appear();
  /// A page that scrolls on a small screen, above a row of buttons that always stands.
  void layOutAround(QScrollArea& scroll, QWidget& page, QHBoxLayout& buttons, int margin);
  /// Takes the size at which all is seen that stands in its scrolling part, and `usual` below the title at
  /// least. What the screen of the window above can't hold scrolls.
  void fitAround(const QScrollArea& scroll, QSize usual);
  /// What the system draws around it. Before it stands on the screen nobody knows how much.
  [[nodiscard]] QSize decoration() const;
  /// What Enter presses where the focus is on no other button, each time the dialog comes up.
  void setDefault(QPushButton& button);

  void closeEvent(QCloseEvent* event) override;
  void reject() override;

 private:
  struct Look {
    std::string caption;
    bool visible = false;
    bool enabled = true;
    bool modal = false;
    unsigned fronts = 0;
    friend bool operator==(const Look&, const Look&) = default;
  };
  void show(const Look& look);

  std::function<void()> m_close;
  Bindings m_bindings;
  unsigned m_fronts = 0;
  QPushButton* m_default = nullptr;
};

}  // namespace velgrove
