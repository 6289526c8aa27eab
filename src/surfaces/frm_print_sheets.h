#pragma once

#include <functional>
#include <string>
#include <vector>

#include "controls/form.h"
#include "controls/machine.h"
#include "controls/widgets.h"
#include "core/show_state.h"
#include "model/show_sheet.h"
#include "playback/queue_list.h"

namespace velgrove {

/// The way of sheets to paper. The face provides it; each call gives the desk back meanwhile. What can't be
/// put on paper is Fault::Device, with the reason in plain words.
struct SheetPress {
  std::function<bool()> anyPrinter = [] { return false; };
  /// Prints on the printer that the operator has chosen.
  std::function<void(const Printout&)> print;
  /// The bytes of a PDF file.
  std::function<std::string(const Printout&)> pdf;
};

/// Asks which sheets of the open show go to paper, and prints them or saves them as PDF. The show goes on
/// beside it.
class frmPrintSheets {
 public:
  struct Wiring {
    std::function<QueueList&()> abPlayer;  ///< these two: Fault::ObjectMissing when no show is open
    std::function<QueueList&()> xyPlayer;
    std::function<void(const std::string&)> showStatus;
  };

  frmPrintSheets(ShowState& show, Machine& machine, Wiring wiring);
  frmPrintSheets(const frmPrintSheets&) = delete;
  frmPrintSheets& operator=(const frmPrintSheets&) = delete;

  Form Window{.Caption = "Print Cue Sheets"};
  Label lblSheets{.Caption = "Sheets of the show as it stands now:"};
  // What is ticked stays so while the desk runs.
  CheckBox chkXY{.Caption = "XY cue list", .Value = 1, .Click = [this] { tickChanged(); }};
  CheckBox chkAB{.Caption = "AB cue list", .Value = 1, .Click = [this] { tickChanged(); }};
  CheckBox chkPatch{.Caption = "Patch", .Value = 1, .Click = [this] { tickChanged(); }};
  CheckBox chkSubmasters{.Caption = "Submasters", .Value = 1, .Click = [this] { tickChanged(); }};
  Button cmdPrint{
      .Caption = "&Print...", .ToolTip = "Choose a printer and print", .Click = [this] { cmdPrint_Click(); }};
  Button cmdSavePDF{.Caption = "&Save as PDF...",
                    .ToolTip = "Save the sheets as a PDF file",
                    .Click = [this] { cmdSavePDF_Click(); }};
  Button cmdCancel{.Caption = "Cancel", .Click = [this] { Unload(); }};

  SheetPress Press;

  void Show();
  /// Both close the window when the sheets are out, and leave it with a box that says why when they aren't.
  void cmdPrint_Click();
  void cmdSavePDF_Click();
  void Unload();

 private:
  [[nodiscard]] std::vector<ShowSheet> ticked() const;
  void tickChanged();
  [[nodiscard]] Printout takeSheets() const;
  [[nodiscard]] bool mayReplace(const std::string& file) const;
  void print();
  void savePDF();
  /// Tells why work failed, in the words `what` and those of the fault.
  template <class Work>
  void telling(const char* what, Work&& work);

  ShowState& m_show;
  Machine& m_machine;
  Wiring m_wiring;
};

}  // namespace velgrove
