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

/// Keys in capitals without blanks, "_", "-", "/" and "#": programs spell them in many ways.
constexpr std::array<std::pair<std::string_view, Field>, 22> fields{{
    {"NAME", &SpectrumRecord::name},
    {"FORMULA", &SpectrumRecord::formula},
    {"PRECURSORMZ", &SpectrumRecord::precursorMz},
    {"PRECURSORTYPE", &SpectrumRecord::adduct},
    {"ADDUCT", &SpectrumRecord::adduct},
    {"IONMODE", &SpectrumRecord::ionMode},
    {"CHARGETYPE", &SpectrumRecord::ionMode},
    {"COLLISIONENERGY", &SpectrumRecord::collisionEnergy},
    {"CE", &SpectrumRecord::collisionEnergy},
    {"SPECTRUMTYPE", &SpectrumRecord::msType},
    {"MSLEVEL", &SpectrumRecord::msType},
    {"INSTRUMENTTYPE", &SpectrumRecord::instrumentType},
    {"FRAGMENTATIONMODE", &SpectrumRecord::fragmentationMode},
    {"FRAGMENTATIONMETHOD", &SpectrumRecord::fragmentationMode},
    {"LICENSE", &SpectrumRecord::license},
    {"AUTHORS", &SpectrumRecord::authors},
    {"AUTHOR", &SpectrumRecord::authors},
    {"COPYRIGHT", &SpectrumRecord::copyright},
    {"ACCESSION", &SpectrumRecord::accession},
    {"DB", &SpectrumRecord::accession},
    {"NIST", &SpectrumRecord::accession},
    {"TITLE", &SpectrumRecord::title},
}};

std::string PlainKey(const std::string& key) {
    std::string plain;
    for (const char c : support::ToUpper(key))
        if (std::string_view(" \t_-/#").find(c) == std::string_view::npos) plain += c;
    return plain;
}

/// Annotations in quotes may hold any character; they are of no use here.
std::string WithoutQuoted(const std::string& line) {
    std::string plain;
    bool quoted = false;
    for (const char c : line) {
        if (c == '"') quoted = !quoted;
        plain += c == '"' || quoted ? ' ' : c == ',' ? ' ' : c;
    }
    return plain;
}

class Reader {
  public:
    Reader(const std::string& path, const std::vector<std::string>& lines) : path_(path), lines_(lines) {}

    std::vector<SpectrumRecord> Read() {
        for (line_ = 1; line_ <= static_cast<int>(lines_.size()); ++line_)
            ReadLine(lines_[static_cast<std::size_t>(line_ - 1)]);
        End();
        return std::move(records_);
    }

  private:
    void ReadLine(const std::string& line) {
        if (support::Trim(line).empty()) return;
        const bool inPeaks = announcedLine_ > 0;
        if (inPeaks && !line.empty() && line.find_first_of("0123456789.", 0) == line.find_first_not_of(" \t;"))
            return ReadPeaks(line);
        const auto colon = line.find(':');
        if (colon == std::string::npos)
            FailImport(path_, line_, "\"" + support::Excerpt(line) + "\" is neither \"Key: value\" nor a peak");
        const std::string key = PlainKey(line.substr(0, colon));
        const std::string value(support::Trim(line.substr(colon + 1)));
        if (key == "NAME") Begin();
        if (records_.empty())
            FailImport(path_, line_, "a spectrum begins with \"Name:\", not with \"" + support::Excerpt(line) + "\"");
        if (inPeaks && key != "NAME")
            FailImport(path_, line_,
                       "\"" + support::Excerpt(line) + "\" stands among the peaks; \"Name:\" begins a spectrum");
        if (key == "NUMPEAKS") {
            announced_ = ReadPeakCount(path_, line_, value);
            announcedLine_ = line_;
            return;
        }
        for (const auto& [name, field] : fields) {
            StatedText& stated = records_.back().*field;
            if (key == name && !stated.IsGiven() && !value.empty()) stated = {value, line_};
        }
    }

    void Begin() {
        End();
        if (records_.size() == maximumSpectra)
            FailImport(path_, line_, "there are more than " + std::to_string(maximumSpectra) + " spectra");
        records_.emplace_back();
        records_.back().path = path_;
        records_.back().line = line_;
    }

    void ReadPeaks(const std::string& line) {
        for (const std::string& part : support::Split(WithoutQuoted(line), ';')) {
            const auto words = Words(part);
            if (words.empty()) continue;
            if (words.size() < 2)
                FailImport(path_, line_, "a peak needs m/z and intensity, not \"" + support::Excerpt(words[0]) + "\"");
            AddPeak(records_.back(), line_, words[0], words[1]);
        }
    }

    void End() {
        if (records_.empty()) return;
        if (announcedLine_ == 0)
            FailImport(path_, records_.back().line, "the spectrum has no line \"Num Peaks:\"; it is cut off");
        FinishPeaks(records_.back(), announcedLine_, announced_);
        announcedLine_ = 0;
    }

    const std::string& path_;
    const std::vector<std::string>& lines_;
    std::vector<SpectrumRecord> records_;
    int line_ = 0;
    std::size_t announced_ = 0;
    int announcedLine_ = 0;
};

}  // namespace

std::vector<SpectrumRecord> ReadMspSpectra(const std::string& path, const std::vector<std::string>& lines) {
    return Reader(path, lines).Read();
}

}  // namespace orvanel
