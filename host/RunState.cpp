#include "host/RunState.h"

#include "host/HostWrapper.h"
#include "host/clsTolmBatch.h"
#include "support/modGlobals.h"

namespace veltra {

RunState::RunState(const RunPorts& ports, clsInfo_Settings& runSettings)
    : host(ports.host),
      display(ports.display),
      messageBoxes(ports.messageBoxes),
      folderChooser(ports.folderChooser),
      clock(ports.clock),
      settings(runSettings) {}

RunState::~RunState() = default;

void RunState::WriteLogLine(const std::string& strText) const {
    const ports::DateTimeTexts now = clock.Now();
    if (results) support::AppendLineToFile(results->LogFilePath, "[" + now.generalDate + "]  " + strText);
    display.AddLogEntry("[" + now.longTime + "]   " + strText);
}

void RunState::ReportError(HostWrapper& wrapper, ports::MessageIcon icon) const {
    messageBoxes.Show(wrapper.ErrorDescription(), icon);
    WriteLogLine(wrapper.ErrorDescription());
    wrapper.ResetError();
}

}  // namespace veltra
