#pragma once

#include <memory>

#include "ports/DataExploration.h"

namespace orvanel {

/// The data-exploration library. Sample 1, period 0 and experiment 0 of a file can be explored (data/DataReader.h says
/// which spectra these are). Its handles may outlive it. Handles of one library share the files they have read.
std::unique_ptr<ports::DataExploration> CreateDataExploration();

}  // namespace orvanel
