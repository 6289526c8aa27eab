#pragma once

#include <QFrame>
#include <QLabel>
#include <QMainWindow>
#include <QSplitter>
#include <functional>
#include <map>
#include <memory>

#include "core/lighting_desk.h"
#include "desktop/binding.h"
#include "desktop/child_area.h"
#include "desktop/child_window.h"
#include "desktop/cue_window.h"
#include "desktop/document_window.h"
#include "desktop/show_bar.h"
#include "desktop/status_line.h"
#include "desktop/sub_strip.h"
#include "desktop/tools.h"

namespace velgrove {

/// The frame of the desk, frmMain: menus, the band with Go, the plot's tools, the child windows, the strip of
/// the submasters, the foot.
class FrameWindow : public QMainWindow {
  Q_OBJECT

 public:
  FrameWindow(LightingDesk& desk, Face& face);
  ~FrameWindow() override;
  FrameWindow(const FrameWindow&) = delete;
  FrameWindow& operator=(const FrameWindow&) = delete;

  // Where dialogs find room, in the screen's pixels:

  [[nodiscard]] QRect band() const;    ///< with Go and the cue panel
  [[nodiscard]] QRect ground() const;  ///< of the child windows; their places count from its corner
  /// Where the plot of a document begins; the corner of the ground when it isn't shown.
  [[nodiscard]] QPoint plotCorner(unsigned document) const;
  [[nodiscard]] std::vector<QRect> lists() const;  ///< the windows of the players that can be seen

  [[nodiscard]] QRect subButton(int index) const;  ///< of a submaster, from 0
  [[nodiscard]] QRect aboveStrip() const;          ///< the screen above the strip of the submasters

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void changeEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  struct Look {
    std::string caption;
    bool visible = false;
    WindowState state = WindowState::Normal;
    QRect place;
    friend bool operator==(const Look&, const Look&) = default;
  };
  /// The windows that come and go, each by the identity of its form.
  using ByIdentity = std::map<unsigned, ChildWindow*>;

  void build();
  [[nodiscard]] QWidget* makeToolColumn();
  [[nodiscard]] static QWidget* scrolling(QWidget* column);
  [[nodiscard]] QWidget* makeBanner();
  void bindFrame();
  void bindRequests();
  void addPlayer(const CueWindow::Names& names, std::unique_ptr<QueueList> Windows::*player,
                 ChildArea::Place place);
  template <class Window, class Content>
  void addFloating(Window& window, void (Window::*closed)());
  void focusNextPart();
  void showDocuments(const std::vector<unsigned>& identities);
  void addDocument(unsigned identity);
  [[nodiscard]] frmDocument* documentOf(unsigned identity) const;
  void addBars(unsigned identity);
  [[nodiscard]] frmBars* barsOf(unsigned identity) const;
  void onActivated(const QMdiSubWindow* window);
  void show(const Look& look);
  void noteGeometry();
  void size();
  void showPopUp(const ToolBars::PopUp& popUp);
  [[nodiscard]] PlotView::Mode mode() const;

  LightingDesk& m_desk;
  Face& m_face;
  Bindings m_bindings;
  Tools m_tools;
  ShowBar* m_band = nullptr;
  QWidget* m_toolColumn = nullptr;
  QFrame* m_banner = nullptr;
  QLabel* m_bannerMark = nullptr;
  QLabel* m_bannerText = nullptr;
  QSplitter* m_splitter = nullptr;
  SubStrip* m_strip = nullptr;
  ChildArea* m_children = nullptr;
  ByIdentity m_documents;
  ByIdentity m_bars;
  unsigned m_activeDocument = 0;
  Bindings::Shown<Look> m_look;
};

}  // namespace velgrove
