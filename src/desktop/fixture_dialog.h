#pragma once

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedWidget>
#include <QTabBar>
#include <array>

#include "core/lighting_desk.h"
#include "desktop/fader.h"
#include "desktop/fixture_widgets.h"
#include "desktop/form_dialog.h"
#include "desktop/frame_window.h"
#include "desktop/position_panel.h"
#include "desktop/wheel_over.h"

namespace velgrove {

/// The dialog of a fixture, FixtureDlg or MovingFixtureDlg: its level and channel, what is told of it, and
/// the position of a moving light. The wheel anywhere over it turns the level.
class FixtureDialog : public FormDialog {
  Q_OBJECT

 public:
  FixtureDialog(FrameWindow& frame, Face& face, LightingDesk& desk, FixtureDlg& dialog);
  FixtureDialog(FrameWindow& frame, Face& face, LightingDesk& desk, MovingFixtureDlg& dialog);

 protected:
  void takePlace() override;
  void appear() override;
  void changeEvent(QEvent* event) override;

 private:
  struct Parts {
    const char* name;
    FixtureForm& form;
    const char* sliderName;
    Slider& slider;
    std::function<void()> close;
  };
  /// What the level and its fader look like at this moment.
  struct Held {
    bool blind = false;
    int input = 0;  ///< what the DMX input gives the channel, a DMX value
    friend bool operator==(const Held&, const Held&) = default;
  };
  struct Place {
    bool visible = false;
    QPoint pointer;         ///< pixels of the plot
    unsigned document = 0;  ///< whose plot
    friend bool operator==(const Place&, const Place&) = default;
  };

  template <class Dialog>
  static Parts partsOf(const char* name, Dialog& dialog, const char* sliderName, Slider& slider);
  FixtureDialog(FrameWindow& frame, Face& face, LightingDesk& desk, const Parts& parts);

  void dress(const char* sliderName);
  void bindControls(Slider& slider);
  void bindProperties();
  void bindState();
  [[nodiscard]] QWidget* makeSettings();
  [[nodiscard]] QWidget* makeProperties();
  void layOut();
  void orderFocus();
  void focusFirst(int page);
  void fit();
  [[nodiscard]] FixtureSymbol::Subject subject() const;
  [[nodiscard]] Held held() const;
  void show(const Held& held);
  [[nodiscard]] Place place() const;
  void standBeside(QPoint pointer);
  void turn(int rotation);

  FrameWindow& m_frame;
  LightingDesk& m_desk;
  FixtureForm& m_form;
  // Before what stands in them:
  QTabBar m_tabs;
  QScrollArea m_scroll;
  QStackedWidget m_pages;

  FixtureSymbol m_symbol;
  QLabel m_channelCaption, m_nameCaption, m_levelCaption, m_name;
  Field m_channel, m_level;
  Spinner m_arrows{m_level, Spinner::InLevel};
  InputHolds m_inputHolds;
  Fader m_fader;
  PositionPanel* m_position = nullptr;  ///< of a moving light
  QHBoxLayout* m_settings = nullptr;
  std::array<QLabel, FixtureForm::TextCount> m_textLabels;
  std::array<Field, FixtureForm::TextCount> m_texts;
  QPushButton m_ok, m_cancel;
  Bindings::Shown<Place> m_place;
  Place m_stands;                                                      ///< where it was put last
  WheelOver m_wheel{*this, [this](int rotation) { turn(rotation); }};  ///< it means the level
};

}  // namespace velgrove
