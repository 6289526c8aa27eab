#pragma once

#include <QWidget>
#include <vector>

#include "surfaces/frm_show_view.h"

namespace velgrove {

/// The words of the show view: stage and next cue, the time left, and below them, as many lines as they take,
/// links, loop, mode and interface. Type is as large as it's told; only descriptions are ever shortened.
class ShowViewPanel : public QWidget {
  Q_OBJECT

 public:
  ShowViewPanel();

  /// Paints what has changed. True when the new words may take more or less room than those before.
  bool show(const ShowViewLook& look);
  /// `scale` 1 is the usual type of the compact desk.
  void setScale(double scale);

  /// The height that the panel takes at a width and a scale, and the width below which a number would be cut.
  [[nodiscard]] int heightAt(int width, double scale) const;
  [[nodiscard]] int leastWidth(double scale) const;
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  /// A word or two with its sign, in a line of them.
  struct Note {
    enum class Kind { Plain, Loop, Blind, Live, Interface, Lost };
    Kind kind = Kind::Plain;
    QString text;
    QRect place{};
    friend bool operator==(const Note&, const Note&) = default;
  };
  /// Where all stands.
  struct Layout {
    QRect stage;
    QRect next;
    QRect time;
    std::vector<Note> notes;
    int height = 0;
  };

  [[nodiscard]] Layout layOut(int width, double scale) const;
  [[nodiscard]] static std::vector<Note> notesOf(const ShowViewLook& look);
  [[nodiscard]] static QString spoken(const ShowViewLook& look);
  void paintCue(QPainter& painter, bool next) const;
  void paintTime(QPainter& painter) const;
  void paintNote(QPainter& painter, const Note& note) const;

  ShowViewLook m_look;
  double m_scale = 1;
  Layout m_layout;
};

}  // namespace velgrove
