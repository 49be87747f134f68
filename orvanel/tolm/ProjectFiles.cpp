#include "orvanel/tolm/ProjectFiles.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "orvanel/HostErrorNumbers.h"
#include "orvanel/XmlReader.h"
#include "ports/HostError.h"
#include "support/Files.h"
#include "support/Paths.h"
#include "support/Text.h"

namespace orvanel {

namespace {

constexpr const char* methodsFolder = "Acquisition Methods";

bool IsReservedName(const std::string& name) {
    static constexpr std::array<std::string_view, 4> devices = {"CON", "PRN", "AUX", "NUL"};
    const std::string stem = support::ToUpper(support::Trim(name.substr(0, name.find('.'))));
    if (std::find(devices.begin(), devices.end(), stem) != devices.end()) return true;
    return stem.size() == 4 && (stem.starts_with("COM") || stem.starts_with("LPT")) && stem[3] >= '1' && stem[3] <= '9';
}

bool HasExtension(const std::string& name, const std::string& extension) {
    return name.size() > extension.size() &&
           support::EqualIgnoringCase(name.substr(name.size() - extension.size()), extension);
}

}  // namespace

bool IsPortableName(const std::string& name) {
    if (name.empty() || name.size() > 255 || name.back() == '.' || name.back() == ' ' || !IsXmlText(name)) return false;
    for (const char c : name)
        if (static_cast<unsigned char>(c) < 0x20 || std::string_view("<>:\"|?*\\/").find(c) != std::string_view::npos)
            return false;
    return !IsReservedName(name);
}

void CheckFileName(std::int32_t number, const std::string& what, const std::string& name,
                   const std::string& extension) {
    if (!IsPortableName(name) || !HasExtension(name, extension))
        throw ports::HostError(number, "\"" + name + "\" is no name of a " + what +
                                           " file, expected is a file name without folder that ends in " + extension);
}

void CheckDataFileName(const std::string& name) {
    std::string plain = name;
    std::replace(plain.begin(), plain.end(), '\\', '/');
    const auto parts = support::Split(plain, '/');
    if (!std::all_of(parts.begin(), parts.end(), IsPortableName) || !HasExtension(name, ".vesk"))
        throw ports::HostError(errorNumber::badDataFile,
                               "\"" + name +
                                   "\" is no name of a data file, expected is a path within the project's data folder "
                                   "that ends in .vesk");
}

ProjectFiles::ProjectFiles(const std::string& path, const std::string& name) : parent_(support::NativePath(path)) {
    if (parent_.empty() || !IsPortableName(name))
        throw ports::HostError(errorNumber::projectNotFound, "\"" + path + name + "\" is no path of a project");
    folder_ = support::JoinPath(parent_, name);
    if (!support::FolderExists(folder_))
        throw ports::HostError(errorNumber::projectNotFound, "There is no project folder " + folder_);
}

std::string ProjectFiles::FindMethod(const std::string& methodFileName) const {
    CheckFileName(errorNumber::methodNotFound, "method", methodFileName, ".xmt");
    const std::array<std::string, 3> folders = {support::JoinPath(folder_, methodsFolder),
                                                support::JoinPath(parent_, methodsFolder), folder_};
    for (const auto& folder : folders) {
        std::string path = support::JoinPath(folder, methodFileName);
        if (support::FileExists(path)) return path;
    }
    throw ports::HostError(errorNumber::methodNotFound, "There is no method " + methodFileName + " in " + folders[0] +
                                                            ", " + folders[1] + " or " + folders[2]);
}

std::string ProjectFiles::DataFile(const std::string& dataFileName) const {
    CheckDataFileName(dataFileName);
    std::string data = support::JoinPath(folder_, "Data");
    if (!support::FolderExists(data)) data = support::JoinPath(parent_, "Data");
    std::string path = support::NativePath(support::JoinPath(data, dataFileName));
    if (!support::FolderExists(support::FolderOf(path)))
        throw ports::HostError(errorNumber::badDataFile,
                               "The folder of data file " + path + " does not exist, create it first");
    return path;
}

std::string ProjectFiles::BatchFile(const std::string& batchFileName) const {
    CheckFileName(errorNumber::badBatch, "batch", batchFileName, ".xbt");
    const std::string folder = support::JoinPath(folder_, "Batch");
    try {
        support::CreateFolders(folder);
    } catch (const support::FileError& error) {
        throw ports::HostError(errorNumber::batchNotSaved, error.what());
    }
    return support::JoinPath(folder, batchFileName);
}

}  // namespace orvanel
