#pragma once

#include <QRect>
#include <QWidget>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "desktop/binding.h"
#include "plot/document.h"

namespace velgrove {

/// The fixtures of a plot in words: assistive tools walk them by channel, as the keys do, and hear which one
/// is picked. Nothing is copied while no such tool listens.
class PlotVoice {
 public:
  using FindDocument = std::function<frmDocument*()>;
  /// Lives as long as the plot, which is the widget that the words are about.
  PlotVoice(QWidget& plot, Bindings& bindings, FindDocument find);
  PlotVoice(const PlotVoice&) = delete;
  PlotVoice& operator=(const PlotVoice&) = delete;

 private:
  struct Fixture {
    std::string words;  ///< "12 leko, Front left, 46 %, submaster"
    QRect place;        ///< in the widget
  };

  bool copy();
  static Fixture told(const frmDocument& document, const clsFixture& fixture);

  QWidget& m_plot;
  FindDocument m_find;
  std::vector<Fixture> m_fixtures;
  std::optional<unsigned> m_revision;  ///< of the drawing, as it was told
  std::weak_ptr<clsFixture> m_picked;
  int m_current = -1;
};

}  // namespace velgrove
