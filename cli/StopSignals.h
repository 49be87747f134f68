#pragma once

#include <memory>

namespace cli {

/// Ctrl-C and a request to terminate, taken as requests to abort the run while one of these lives. Later ones are taken
/// too, so that no impatience loses the report.
class StopSignals {
  public:
    StopSignals();

    /// @return true once for every time that at least one signal has come in since the last call
    bool TakeRequest();

  private:
    std::shared_ptr<void> handlers_;
};

}  // namespace cli
