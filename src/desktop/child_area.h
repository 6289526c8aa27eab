#pragma once

#include <QMdiArea>

#include "core/frm_main.h"

namespace velgrove {

/// The frame's ground for its child windows. They stand as the house lays them out - the plot at the left,
/// the lists at the right - until the operator moves one of them or arranges them. Others float: they come up
/// over the plot, stay where the hand puts them, and no click on the windows below hides them unless they
/// fill the frame.
class ChildArea : public QMdiArea {
  Q_OBJECT

 public:
  explicit ChildArea(QWidget* parent = nullptr);
  ~ChildArea() override;
  ChildArea(const ChildArea&) = delete;
  ChildArea& operator=(const ChildArea&) = delete;

  enum class Place { Plot, UpperList, LowerList, Floating };
  void add(QMdiSubWindow* window, Place place);
  /// Goes to the window that stands so many further on in the order in which they were made, out of its icon.
  /// The toolkit's own way goes to and fro between the two that were used last.
  void activateNext(int step);
  /// Ctrl+Tab and Ctrl+W mean these windows, wherever the focus is in the frame.
  void takeKeysOf(QWidget& frame);
  /// One that nobody asked for, since it came with a show, stays behind a floating one that fills the frame.
  void bringForward(QMdiSubWindow& window, bool asked);
  /// The same for one that a link has put down.
  void keepInFront();
  void arrange(Arrangement::Code how);
  void layOut();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void tile(bool sideBySide);
  void lineUpIcons();
  [[nodiscard]] QList<QMdiSubWindow*> openWindows() const;
  [[nodiscard]] static Place placeIn(const QMdiSubWindow& window);
  void placeFloating(QMdiSubWindow& window) const;
  void raiseFloating();
  /// The floating window that fills the frame; null when none does.
  [[nodiscard]] QMdiSubWindow* whole() const;
  void bringIntoView(const QWidget* widget);
  [[nodiscard]] QRect placeOf(Place place) const;
  [[nodiscard]] static QRect grown(QRect area, QSize least, Place place);

  bool m_byHand = false;
  bool m_layingOut = false;
};

}  // namespace velgrove
