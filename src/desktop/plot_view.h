#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "desktop/binding.h"
#include "desktop/newest.h"
#include "desktop/plot_painter.h"
#include "desktop/plot_voice.h"
#include "plot/document.h"

namespace velgrove {

/// The plot of a document on the screen: paints what of its drawing has changed, and hands the mouse and the
/// keys to it. The wheel with Ctrl zooms about the mouse, the middle button moves the view.
class PlotView : public QWidget {
  Q_OBJECT

 public:
  using FindDocument = std::function<frmDocument*()>;
  PlotView(Bindings& bindings, FindDocument find);

  /// Blind and Live stand out by a frame about the plot.
  enum class Mode { Stage, Blind, Live };
  void setMode(Mode mode);

 signals:
  void wheelTurned(const QWheelEvent& event);  ///< without Ctrl

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  /// What is shown beside the picture.
  struct Trimmings {
    std::optional<Extents> band;
    std::string cursor;
    bool cross = false;  ///< stands over the tool's cursor
    friend bool operator==(const Trimmings&, const Trimmings&) = default;
  };
  /// One thing that the hand does, as the drawing takes it.
  struct Hand {
    void (Drawing::*handler)(int button, int flags, Pixel at) = nullptr;
    int button = 0;
    int flags = 0;
    Pixel at;

    void on(const FindDocument& find) const {
      if (frmDocument* document = find()) (document->FlpCAD1.*handler)(button, flags, at);
    }
  };

  bool copy();
  static std::vector<FixtureShapes> fixturesOf(const frmDocument& document);
  void apply();
  void showTrimmings();
  [[nodiscard]] QCursor cursorOf(const Trimmings& trimmings) const;
  void tell(const Hand& hand);
  void tellLostReleases(const QMouseEvent& event, Qt::MouseButtons stillDown);
  void pan(QPointF from, QPointF to);
  void endPan();
  void leave();
  static std::function<void(frmDocument&)> meaningOf(const QKeyEvent& key);
  [[nodiscard]] WorldView view() const;
  [[nodiscard]] QRect worldRect() const;
  [[nodiscard]] QRect bandRect(const Extents& band) const;

  Face& m_face;
  FindDocument m_find;
  PlotPicture m_plot;
  PlotPicture m_next;      ///< copied, to be shown; then what was shown before
  bool m_redrawn = false;  ///< it was copied
  Trimmings m_trimmings;
  Trimmings m_shown;
  PlotPainter m_painter;
  Mode m_mode = Mode::Stage;
  Newest<Hand> m_motion;
  Qt::MouseButtons m_down;  ///< whose press the drawing knows, and no release
  PlotVoice m_voice;
  std::optional<QPointF> m_pannedTo;  ///< while the middle button moves the view
};

}  // namespace velgrove
