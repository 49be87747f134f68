#include "orvanel/CompoundFolder.h"

#include <string_view>

#include "orvanel/FileFailure.h"
#include "orvanel/HostErrorNumbers.h"
#include "ports/HostError.h"
#include "support/Files.h"
#include "support/Paths.h"
#include "support/Text.h"

namespace orvanel {

std::string ElementTablePath(const std::string& appLocation) {
    return support::JoinPath(support::JoinPath(appLocation, "bin"), "QvElements.ini");
}

std::string ModelsFolder(const std::string& appLocation) {
    return support::JoinPath(appLocation, "models");
}

std::string CompoundsFolder(const std::string& appLocation) {
    return support::JoinPath(appLocation, "compounds");
}

std::vector<std::string> CompoundNames(const std::string& appLocation, const support::Disk& disk) {
    const std::string_view extension = compoundFileExtension;
    std::vector<std::string> names;
    for (const auto& file : AsHostError(errorNumber::badConfiguration,
                                        [&] { return support::FilesIn(CompoundsFolder(appLocation), disk); }))
        if (file.size() > extension.size() && file.ends_with(extension))
            names.push_back(file.substr(0, file.size() - extension.size()));
    return names;
}

std::string FindCompoundFile(const std::string& appLocation, const std::string& compound, const support::Disk& disk) {
    if (compound.find_first_of("\\/") != std::string::npos) return compound;
    std::string known;
    for (const auto& name : CompoundNames(appLocation, disk)) {
        if (support::EqualIgnoringCase(name, compound))
            return support::JoinPath(CompoundsFolder(appLocation), name + compoundFileExtension);
        known += (known.empty() ? "" : ", ") + name;
    }
    throw ports::HostError(errorNumber::badConfiguration, "There is no compound \"" + compound + "\" in " +
                                                              CompoundsFolder(appLocation) +
                                                              ", it has: " + (known.empty() ? "none" : known));
}

}  // namespace orvanel
