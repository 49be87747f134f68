// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/data/DataFile.h"

#include "orvanel/data/DataErrors.h"
#include "orvanel/data/MzmlAdapter.h"
#include "ports/HostError.h"
#include "support/Files.h"

namespace orvanel {

void WriteDataFile(const std::string& path, const AcquiredData& data, const support::Disk& disk) {
    try {
        support::WriteWholeFile(path, WriteMzml(data), disk);
    } catch (const support::FileError& error) {
        throw ports::HostError(dataFileNotWritten, error.what());
    } catch (const std::exception& error) {
        throw ports::HostError(dataFileNotWritten,
                               "The data file \"" + path + "\" could not be written: " + error.what());
    }
}

}  // namespace orvanel
