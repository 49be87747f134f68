// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/import/RecordText.h"

#include <algorithm>

#include "orvanel/instrument/InstrumentErrors.h"
#include "ports/HostError.h"
#include "support/Files.h"
#include "support/NumberText.h"
#include "support/Text.h"

namespace orvanel {
namespace {

constexpr std::uint64_t sizeLimit = 32 << 20;
constexpr std::size_t longestMessageBytes = 1000;
constexpr double highestMz = 100000;
constexpr double highestIntensity = 1e30;

std::string FromLatin1(const std::string& text) {
    std::string utf8;
    for (const char c : text)
        utf8 += support::Utf8Of(static_cast<unsigned char>(c));
    return utf8;
}

double PeakNumber(const std::string& path, int line, const std::string& text, const char* what, double minimum,
                  double maximum) {
    const auto value = support::ParseDouble(text);
    if (!value || *value < minimum || *value > maximum)
        FailImport(path, line,
                   "\"" + support::Excerpt(text) + "\" is no " + what + ", which is a number from " +
                       support::GeneralText(minimum) + " to " + support::GeneralText(maximum));
    return *value;
}

int DecimalsOf(const std::string& number) {
    const auto point = number.find('.');
    if (point == std::string::npos) return 0;
    const auto end = std::min(number.find_first_not_of("0123456789", point + 1), number.size());
    return static_cast<int>(end - point - 1);
}

}  // namespace

void FailImport(const std::string& path, int line, const std::string& text) {
    throw ports::HostError(spectrumFileFaulty, path + (line > 0 ? ", line " + std::to_string(line) : "") + ": " +
                                                   support::Excerpt(text, longestMessageBytes));
}

std::vector<std::string> ReadTextLines(const std::string& path, const support::Disk& disk) {
    std::string text;
    try {
        text = support::ReadWholeFile(path, sizeLimit, disk);
    } catch (const support::FileError& error) {
        throw ports::HostError(spectrumFileFaulty, error.what());
    }
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF"))
        FailImport(path, 0, "is written in UTF-16; save it as UTF-8");
    if (text.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);
    if (!support::IsUtf8(text)) text = FromLatin1(text);
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find_first_of("\r\n", begin), text.size());
        lines.push_back(text.substr(begin, end - begin));
        if (lines.back().find('\0') != std::string::npos)
            FailImport(path, static_cast<int>(lines.size()), "holds a byte 0, so this is no text file");
        begin = end + (text.compare(end, 2, support::crLf) == 0 ? 2 : 1);
    }
    return lines;
}

std::size_t ReadPeakCount(const std::string& path, int line, const std::string& text) {
    const auto count = support::ParseInt32(text);
    if (!count || *count < 0 || *count > static_cast<int>(maximumPeaks))
        FailImport(
            path, line,
            "\"" + support::Excerpt(text) + "\" is no number of peaks from 0 to " + std::to_string(maximumPeaks));
    return static_cast<std::size_t>(*count);
}

void AddPeak(SpectrumRecord& record, int line, const std::string& mz, const std::string& intensity) {
    if (record.peaks.size() == maximumPeaks)
        FailImport(record.path, line, "there are more than " + std::to_string(maximumPeaks) + " peaks");
    record.peaks.push_back({PeakNumber(record.path, line, mz, "m/z", 1, highestMz),
                            PeakNumber(record.path, line, intensity, "intensity", 0, highestIntensity)});
    record.mzDecimals = std::max(record.mzDecimals, DecimalsOf(mz));
}

void FinishPeaks(SpectrumRecord& record, int line, std::size_t announced) {
    if (record.peaks.size() != announced)
        FailImport(record.path, line,
                   "the spectrum announces " + std::to_string(announced) + " peaks and has " +
                       std::to_string(record.peaks.size()) + "; it is cut off or was edited");
    std::stable_sort(record.peaks.begin(), record.peaks.end(),
                     [](const RecordPeak& a, const RecordPeak& b) { return a.mz < b.mz; });
}

std::vector<std::string> Words(const std::string& text) {
    std::vector<std::string> words;
    for (std::size_t begin = text.find_first_not_of(" \t"); begin != std::string::npos;) {
        const std::size_t end = std::min(text.find_first_of(" \t", begin), text.size());
        words.push_back(text.substr(begin, end - begin));
        begin = text.find_first_not_of(" \t", end);
    }
    return words;
}

}  // namespace orvanel
