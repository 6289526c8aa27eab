#include "core/frm_keys.h"

#include <string>

#include "core/keys.h"

namespace velgrove {
namespace {

void addRow(ListView& list, const WindowKey& key) {
  const int row = list.count() + 1;
  list.add(row, std::string(key.Key));
  list.setText(row, 1, std::string(key.Where));
  list.setText(row, 2, std::string(key.Does));
}

}  // namespace

frmKeys::frmKeys() {
  ListViewKeys.Columns = {{.Header = "Key"}, {.Header = "Where"}, {.Header = "What it does"}};
  for (const FrameKey& key : frameKeys())
    addRow(ListViewKeys, {.Key = key.Key, .Where = "Anywhere", .Does = key.Does});
  for (const WindowKey& key : windowKeys()) addRow(ListViewKeys, key);
}

void frmKeys::Show() {
  Window.Loaded = true;
  Window.Show();
  Window.Restore();
  ListViewKeys.ensureVisible(1);
}

void frmKeys::Unload() {
  Window.Unload();
}

}  // namespace velgrove
