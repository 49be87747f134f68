#pragma once

#include "ports/MessageBoxes.h"

namespace app {

/// Modal boxes with the title "Veltra" and texts that can be selected, over the window that is active.
class QtMessageBoxes : public ports::MessageBoxes {
  public:
    void Show(const std::string& strText, ports::MessageIcon icon) override;
    bool AskYesNo(const std::string& strQuestion) override;
};

}  // namespace app
