#pragma once

#include "desktop/form_dialog.h"
#include "desktop/frame_window.h"

namespace velgrove {

/// A dialog of one submaster. It stands directly above the strip, its left edge at that of the submaster's
/// button.
class SubDialog : public FormDialog {
  Q_OBJECT

 public:
  struct Parts {
    const char* name;
    Form& form;
    QSize size;                  ///< below the title
    std::function<int()> index;  ///< of the submaster, from 0; called with the desk held
    std::function<void()> close;
  };
  SubDialog(FrameWindow& frame, Face& face, const Parts& parts);

 protected:
  /// Tied last, when the controls show what they have to.
  void bindPlace();
  /// The dialog was asked for: takes the focus to where the operator goes on.
  virtual void begin() = 0;

  void takePlace() override { stand(); }
  void appear() override {}
  void changeEvent(QEvent* event) override;

 private:
  struct Asked {
    bool visible = false;
    unsigned fronts = 0;
    int index = 0;
    friend bool operator==(const Asked&, const Asked&) = default;
  };
  void stand();

  FrameWindow& m_frame;
  Form& m_form;
  QSize m_usual;
  std::function<int()> m_index;
  Bindings::Shown<Asked> m_asked;
  QSize m_around;  ///< what the system draws around it, as far as it was known
};

}  // namespace velgrove
