#pragma once

#include <memory>

#include "orvanel/instrument/InstrumentModel.h"
#include "ports/AcquisitionMethods.h"

namespace orvanel {

/// Method editing for one instrument. The handles that it gives out share their document and may outlive the service.
/// @param currentOperatingMode the mode that the mass spectrometer is in
std::unique_ptr<ports::AcquisitionService> CreateAcquisitionService(std::shared_ptr<const InstrumentModel> model,
                                                                    int currentOperatingMode);

}  // namespace orvanel
