// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/Exploration.h"

#include "orvanel/data/DataReader.h"
#include "orvanel/explore/Chromatogram.h"
#include "orvanel/explore/Spectrum.h"
#include "orvanel/explore/SpectrumPeakList.h"

namespace orvanel {
namespace {

/// One pass of (1, 2, 1)/4 in order of x, without shift; both ends stay as they are.
class BinomialSmoothing : public ports::SmoothingProcessor {
  public:
    void ExploreSmooth(ports::ChromatogramData& data, const ports::SmoothingParameters&) override {
        data.ExploreSortPoints(true, true);
        const auto before = data.GetYValues();
        auto after = before;
        for (std::size_t i = 1; i + 1 < before.size(); ++i)
            after[i] = (before[i - 1] + 2 * before[i] + before[i + 1]) / 4;
        data.SetYValues(after);
    }
};

class Exploration : public ports::DataExploration {
  public:
    explicit Exploration(std::shared_ptr<DataFileCache> files) : files_(std::move(files)) {}

    std::unique_ptr<ports::ChromatogramData> CreateChromatogramData() override {
        return std::make_unique<Chromatogram>(files_);
    }
    std::unique_ptr<ports::SpectrumData> CreateSpectrumData() override { return std::make_unique<Spectrum>(files_); }
    std::unique_ptr<ports::SmoothingProcessor> CreateSmoothingProcessor() override {
        return std::make_unique<BinomialSmoothing>();
    }
    std::unique_ptr<ports::PeakList> ExplorePeakList(const std::string& dataFilePath, int sample,
                                                     const ports::SpectrumData& spectrum) override {
        RequireExperiment(sample, 0, 0);
        const bool profile = files_->Open(dataFilePath)->kind.profile;
        return std::make_unique<SpectrumPeakList>(spectrum.GetXValues(), spectrum.GetYValues(), profile);
    }

  private:
    std::shared_ptr<DataFileCache> files_;
};

}  // namespace

std::unique_ptr<ports::DataExploration> CreateDataExploration(const support::Disk& disk,
                                                              std::function<void(const std::string& path)> check) {
    return std::make_unique<Exploration>(std::make_shared<DataFileCache>(disk, std::move(check)));
}

}  // namespace orvanel
