#pragma once

#include <QWidget>
#include <optional>
#include <string>

namespace velgrove {

/// One submaster in the strip: a button with its number, its name, its level. It is one widget that paints
/// all three, so that a level that moves repaints its own cell and nothing else.
class SubCell : public QWidget {
  Q_OBJECT

 public:
  /// What takes the hand.
  enum class Part { Button, Level };
  struct Look {
    std::string number;
    std::string name;
    std::string level;     ///< percent, as the desk writes it
    bool follows = false;  ///< the level follows the DMX input
    bool shut = false;     ///< the hand can only record
    friend bool operator==(const Look&, const Look&) = default;
  };

  SubCell();

  void setLook(const Look& look);
  [[nodiscard]] const Look& look() const { return m_look; }
  [[nodiscard]] QRect place(Part part) const;
  /// Gives a part the focus.
  void focusOn(Part part);
  [[nodiscard]] Part current() const { return m_current; }
  [[nodiscard]] QString words() const;  ///< what assistive tools say of it
  /// As a click on the part does.
  void act(Part part);

  [[nodiscard]] QSize minimumSizeHint() const override;
  [[nodiscard]] QSize sizeHint() const override { return minimumSizeHint(); }

 signals:
  void opened();   ///< the button was clicked
  void toggled();  ///< the level was clicked
  void recordAsked();
  void focused();

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  [[nodiscard]] QRect placeOfName() const;
  [[nodiscard]] std::optional<Part> partAt(QPoint at) const;
  [[nodiscard]] int percent() const;
  void setHover(std::optional<Part> part);
  void speak();  ///< what it says is another now
  void paintButton(QPainter& painter) const;
  void paintName(QPainter& painter) const;
  void paintLevel(QPainter& painter) const;

  Look m_look;
  Part m_current = Part::Button;
  std::optional<Part> m_hover;
  std::optional<Part> m_pressed;
};

}  // namespace velgrove
