#pragma once

#include <QWidget>
#include <optional>
#include <string>

#include "core/lighting_desk.h"
#include "desktop/binding.h"

namespace velgrove {

/// The cue panel of the tool bar, ID_CueWindow: the cue on stage with the fade that runs through it, the next
/// cue, and the time left.
class CuePanel : public QWidget {
  Q_OBJECT

 public:
  CuePanel(LightingDesk& desk, Bindings& bindings);

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Look {
    std::string text;  ///< "Queue # ", the number, a blank, the description
    std::string nextNumber;
    std::string nextDesc;
    float stagePart = 1;   ///< of the stage's look that still burns
    float nextPart = 0;    ///< of the next look that burns already
    std::string timeLeft;  ///< of the fade, in seconds; "" when nothing fades
    bool loaded = false;
    friend bool operator==(const Look&, const Look&) = default;
  };

  [[nodiscard]] static Look look(const LightingDesk& desk);
  [[nodiscard]] QString spokenLook() const;
  void show(const Look& look);
  [[nodiscard]] QRect lineRect(bool next) const;
  [[nodiscard]] QRect timeRect() const;
  void drawLine(QPainter& painter, bool next, const QRegion& asked);
  void drawTime(QPainter& painter);

  LightingDesk& m_desk;
  Face& m_face;
  Look m_look;
};

}  // namespace velgrove
