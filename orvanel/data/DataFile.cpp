#include "orvanel/data/DataFile.h"

#include "orvanel/data/DataErrors.h"
#include "orvanel/data/MzmlAdapter.h"
#include "ports/HostError.h"
#include "support/Files.h"

namespace orvanel {

void WriteDataFile(const std::string& path, const AcquiredData& data) {
    try {
        support::WriteWholeFile(path, WriteMzml(data));
    } catch (const std::exception& error) {
        throw ports::HostError(dataFileNotWritten,
                               "The data file \"" + path + "\" could not be written: " + error.what());
    }
}

}  // namespace orvanel
