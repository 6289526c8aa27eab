#pragma once

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QObject>
#include <QToolButton>
#include <map>
#include <string>
#include <string_view>

#include "core/lighting_desk.h"
#include "desktop/binding.h"

namespace velgrove {

/// The frame's tools as actions: one for each id, shared by menus and buttons. Each goes to the frame's one
/// handler.
class Tools : public QObject {
  Q_OBJECT

 public:
  Tools(LightingDesk& desk, Bindings& bindings);

  [[nodiscard]] QAction* action(std::string_view id) const;
  void fill(QMenuBar& bar);
  /// A button with the tool's icon; with `caption` also its words below.
  [[nodiscard]] QToolButton* button(std::string_view id, bool caption, QWidget* parent) const;
  /// A menu of a pop-up set.
  [[nodiscard]] QMenu* popUp(std::string_view set, QWidget* parent);
  void click(const std::string& id);

 private:
  struct Look {
    std::string caption;
    std::string tip;
    std::string key;
    bool enabled = true;
    bool pressed = false;
    friend bool operator==(const Look&, const Look&) = default;
  };

  bool copy();
  [[nodiscard]] bool pressed(const Tool& tool) const;
  [[nodiscard]] static QString textOf(const Look& look, const QAction& action);
  [[nodiscard]] static QString tipOf(const Look& look);
  void show();
  void makeActions();
  void addItems(QMenu& menu, const MenuSet& set) const;

  LightingDesk& m_desk;
  Face& m_face;
  std::vector<std::string> m_ids;
  std::map<std::string, QAction*, std::less<>> m_actions;
  std::vector<Look> m_now;    ///< the desk's, copied last
  std::vector<Look> m_shown;  ///< on the screen
};

}  // namespace velgrove
