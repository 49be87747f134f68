// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>

#include "orvanel/instrument/InstrumentModel.h"
#include "ports/AcquisitionMethods.h"
#include "support/Disk.h"

namespace orvanel {

/// Method editing for one instrument. The handles that it gives out share their document and may outlive the service.
/// @param currentOperatingMode the mode that the mass spectrometer is in
/// @param disk must outlive the service and its handles
std::unique_ptr<ports::AcquisitionService> CreateAcquisitionService(std::shared_ptr<const InstrumentModel> model,
                                                                    int currentOperatingMode,
                                                                    const support::Disk& disk = support::SystemDisk());

}  // namespace orvanel
