#pragma once

#include <filesystem>

#include "controls/form.h"
#include "controls/machine.h"
#include "controls/widgets.h"

namespace velgrove {

/// The first thing that the operator sees. It stands over the frame while the desk starts, so that nothing is
/// begun before the interface is up; shown at any other time it goes by itself.
class frmSplash {
 public:
  explicit frmSplash(Machine& machine);

  Form Window{.Caption = "Velgrove"};
  Label Status;           ///< how far the interface has come up
  Timer Timer1;           ///< takes the splash away
  bool Painted = false;   ///< set by the face when the splash stands on the screen
  bool Starting = false;  ///< the desk starts, and takes the splash away itself

  void Form_Load();
  void Timer1_Timer();
  void Unload();
};

/// Tells what this is.
class frmAbout {
 public:
  Form Window{.Caption = "About Velgrove"};
  Label Description{.Caption = "Velgrove\nLighting desk for the theatre"};
  Button cmdOK{.Caption = "OK", .Click = [this] { Unload(); }};

  frmAbout() = default;
  frmAbout(const frmAbout&) = delete;
  frmAbout& operator=(const frmAbout&) = delete;

  void Form_Load();
  void Unload();
};

/// The help: the pages of the operator's manual, which the face reads.
class frmHelp {
 public:
  /// Looks once whether there is a manual in that folder.
  explicit frmHelp(std::filesystem::path folder);
  frmHelp(const frmHelp&) = delete;
  frmHelp& operator=(const frmHelp&) = delete;

  Form Window{.Caption = "Velgrove Help"};
  const std::filesystem::path Folder;
  const bool Exists;

  void Show();
  void Unload();
};

/// Never shown: the end of the desk takes no time.
struct frmWaitExit {
  Form Window{.Caption = "Exiting. Please Wait..."};
};

}  // namespace velgrove
