#pragma once

#include <QAbstractSlider>
#include <QString>
#include <optional>
#include <vector>

namespace velgrove {

/// An upright fader as on a desk: a groove that fills with colour up to the handle, with a scale beside it. A
/// press beside the handle brings it there, and goes on as a drag.
class Fader : public QAbstractSlider {
  Q_OBJECT

 public:
  struct ScaleMark {
    int value = 0;
    QString words;
  };

  explicit Fader(QWidget* parent = nullptr);

  /// In the units of the range, at the right of the groove.
  void setScale(std::vector<ScaleMark> scale);
  /// The fill's colour by its name in the palette. It reaches from the bottom, or from a value, to the
  /// handle.
  void setFill(const char* token, std::optional<int> from = {});
  /// A white triangle at the left of the groove; none without a value.
  void setMark(std::optional<int> value);
  [[nodiscard]] std::optional<int> mark() const { return m_mark; }

  /// Where the middle of the handle stands for a value.
  [[nodiscard]] QPointF placeOf(int value) const { return {axis(), heightOf(value)}; }

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  [[nodiscard]] double axis() const;
  [[nodiscard]] double heightOf(int value) const;
  [[nodiscard]] int valueAt(double y) const;
  [[nodiscard]] QRectF handle() const;
  [[nodiscard]] int widestWords() const;
  void paintScale(QPainter& painter) const;
  void paintGroove(QPainter& painter) const;
  void paintMark(QPainter& painter) const;
  void paintHandle(QPainter& painter) const;

  std::vector<ScaleMark> m_scale;
  const char* m_fill = "manual";
  std::optional<int> m_from;
  std::optional<int> m_mark;
  double m_grip = 0;  ///< of the hand, below the middle of the handle
};

}  // namespace velgrove
