#pragma once

#include <QLabel>
#include <QWidget>
#include <functional>
#include <memory>

#include "desktop/binding.h"
#include "desktop/plot_painter.h"
#include "plot/document.h"

namespace velgrove {

/// One fixture as it stands on its plot, always drawn as picked.
class FixtureSymbol : public QWidget {
  Q_OBJECT

 public:
  struct Subject {
    const frmDocument* plot = nullptr;
    std::shared_ptr<const clsFixture> fixture = {};
  };

  /// `find` runs with the desk held. While a part is missing, the symbol stays as it is.
  FixtureSymbol(Bindings& bindings, std::function<Subject()> find);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  bool copy();
  [[nodiscard]] PlotPainter::View view() const;

  std::function<Subject()> m_find;
  PlotPicture m_picture;
  PlotPainter m_painter;
};

/// "DMX input holds 30", with the triangle that stands for the input on the plot; empty at 0.
class InputHolds : public QLabel {
  Q_OBJECT

 public:
  InputHolds();
  /// Per cent, 0 to 100.
  void setLevel(int percent);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace velgrove
