// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <array>
#include <utility>

#include "orvanel/import/RecordText.h"
#include "orvanel/import/SpectrumReaders.h"
#include "support/Text.h"

namespace orvanel {
namespace {

using Field = StatedText SpectrumRecord::*;

/// Keys as the record format of MassBank names them; of a key that occurs twice the first counts.
constexpr std::array<std::pair<std::string_view, Field>, 15> fields{{
    {"LICENSE: ", &SpectrumRecord::license},
    {"AUTHORS: ", &SpectrumRecord::authors},
    {"COPYRIGHT: ", &SpectrumRecord::copyright},
    {"RECORD_TITLE: ", &SpectrumRecord::title},
    {"CH$NAME: ", &SpectrumRecord::name},
    {"CH$FORMULA: ", &SpectrumRecord::formula},
    {"AC$INSTRUMENT_TYPE: ", &SpectrumRecord::instrumentType},
    {"AC$MASS_SPECTROMETRY: MS_TYPE ", &SpectrumRecord::msType},
    {"AC$MASS_SPECTROMETRY: ION_MODE ", &SpectrumRecord::ionMode},
    {"AC$MASS_SPECTROMETRY: COLLISION_ENERGY ", &SpectrumRecord::collisionEnergy},
    {"AC$MASS_SPECTROMETRY: FRAGMENTATION_MODE ", &SpectrumRecord::fragmentationMode},
    {"MS$FOCUSED_ION: PRECURSOR_M/Z ", &SpectrumRecord::precursorMz},
    {"MS$FOCUSED_ION: PRECURSOR_TYPE ", &SpectrumRecord::adduct},
    {"MS$FOCUSED_ION: ION_TYPE ", &SpectrumRecord::adduct},
    {"ACCESSION: ", &SpectrumRecord::accession},
}};

class Reader {
  public:
    Reader(const std::string& path, const std::vector<std::string>& lines) : path_(path), lines_(lines) {}

    std::vector<SpectrumRecord> Read() {
        for (line_ = 1; line_ <= static_cast<int>(lines_.size()); ++line_)
            ReadLine(lines_[static_cast<std::size_t>(line_ - 1)]);
        if (inRecord_) FailImport(path_, line_ - 1, "the record does not end with \"//\"; it is cut off");
        return std::move(records_);
    }

  private:
    void ReadLine(const std::string& line) {
        if (support::Trim(line).empty()) return;
        if (!inRecord_) Begin(line);
        if (support::Trim(line) == "//") return End();
        if (line.starts_with("  ")) {
            if (inPeaks_) ReadPeak(line);
            return;
        }
        inPeaks_ = false;
        if (line.starts_with("PK$NUM_PEAK:")) {
            announcedLine_ = line_;
            const std::string count(support::Trim(line.substr(line.find(':') + 1)));
            announced_ = count == "N/A" ? 0 : ReadPeakCount(path_, line_, count);
        } else if (line.starts_with("PK$PEAK:")) {
            inPeaks_ = true;
        } else {
            ReadField(line);
        }
    }

    void Begin(const std::string& line) {
        if (!line.starts_with("ACCESSION:"))
            FailImport(path_, line_,
                       "a MassBank record begins with \"ACCESSION:\", not with \"" + support::Excerpt(line) + "\"");
        if (records_.size() == maximumSpectra)
            FailImport(path_, line_, "there are more than " + std::to_string(maximumSpectra) + " records");
        records_.emplace_back();
        records_.back().path = path_;
        records_.back().line = line_;
        inRecord_ = true;
        announcedLine_ = 0;
    }

    void ReadField(const std::string& line) {
        if (line.find(':') == std::string::npos)
            FailImport(path_, line_, "\"" + support::Excerpt(line) + "\" is no line of a MassBank record");
        if (line.starts_with("ACCESSION:") && line_ != records_.back().line)
            FailImport(path_, line_, "a new record begins before \"//\" has ended the one above; it is cut off");
        for (const auto& [key, field] : fields) {
            if (!line.starts_with(key)) continue;
            StatedText& stated = records_.back().*field;
            if (!stated.IsGiven()) stated = {std::string(support::Trim(line.substr(key.size()))), line_};
        }
    }

    void ReadPeak(const std::string& line) {
        const auto words = Words(line);
        if (words.size() < 2)
            FailImport(path_, line_,
                       "a peak needs m/z and intensity, not \"" + support::Excerpt(support::Trim(line)) + "\"");
        AddPeak(records_.back(), line_, words[0], words[1]);
    }

    void End() {
        if (announcedLine_ == 0) FailImport(path_, line_, "the record ends without PK$NUM_PEAK; it is damaged");
        FinishPeaks(records_.back(), announcedLine_, announced_);
        inRecord_ = false;
        inPeaks_ = false;
    }

    const std::string& path_;
    const std::vector<std::string>& lines_;
    std::vector<SpectrumRecord> records_;
    int line_ = 0;
    bool inRecord_ = false;
    bool inPeaks_ = false;
    std::size_t announced_ = 0;
    int announcedLine_ = 0;
};

}  // namespace

std::vector<SpectrumRecord> ReadMassBankRecords(const std::string& path, const std::vector<std::string>& lines) {
    return Reader(path, lines).Read();
}

}  // namespace orvanel
