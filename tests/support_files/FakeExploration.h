// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "ports/DataExploration.h"
#include "ports/HostError.h"
#include "support/NumberText.h"
#include "tests/support_files/FakeHandle.h"
#include "tests/support_files/FixedDataObjects.h"

struct FakePeak {
    double mz = 0, intensity = 0;
    double area = 0;
    int charge = 1;
    int isotopeMarker = 1;
    double centroidShiftDa = 0;  ///< centroid minus the m/z that attribute 0 tells
};

/// The answers of FakeHost's data exploration, whatever the data file. What is not scripted is empty.
struct FakeData {
    struct Chromatogram {
        std::vector<double> x, y;
    };
    struct Spectrum {
        std::vector<double> x, y;
        std::vector<FakePeak> peaks;  ///< in order of m/z
    };
    std::map<std::string, Chromatogram> chromatograms;  ///< by "TIC", "XIC 241.1 241.6" or "overlay 0"
    std::map<std::string, Spectrum> spectra;            ///< by "time" or "cycle 15"
    ports::AxisRange xAxisRange{1, 2}, yValueRange{3, 4};
};

namespace fake {

/// Every load needs a data file first.
template <class Fixed>
class DataObject : public Fixed {
  public:
    explicit DataObject(FakeData& data) : data_(data) {}
    void ExploreSetDataFile(const std::string& path) override { path_ = path; }

  protected:
    template <class Scripted>
    Scripted Find(const std::map<std::string, Scripted>& scripted, const std::string& key) {
        if (path_.empty()) throw ports::HostError(52, "no data file");
        const auto found = scripted.find(key);
        const Scripted loaded = found == scripted.end() ? Scripted() : found->second;
        this->x = loaded.x;
        this->y = loaded.y;
        this->xRange = data_.xAxisRange;
        this->yRange = data_.yValueRange;
        return loaded;
    }
    FakeData& data_;

  private:
    std::string path_;
};

class ChromatogramData : public DataObject<FixedChromatogram> {
  public:
    using DataObject::DataObject;
    void ExploreLoadTIC(int, int, int) override { Find(data_.chromatograms, "TIC"); }
    void ExploreLoadXIC(int, int, int, double massStart, double massStop) override {
        Find(data_.chromatograms, "XIC " + support::GeneralText(massStart) + " " + support::GeneralText(massStop));
    }
    void ExploreLoadXICOverlay(int, int, int, int massNumber) override {
        Find(data_.chromatograms, "overlay " + std::to_string(massNumber));
    }
    void ExploreSortPoints(bool byX, bool ascending) override {
        std::vector<std::size_t> order(x.size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        const auto& keys = byX ? x : y;
        std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
            return ascending ? keys[a] < keys[b] : keys[a] > keys[b];
        });
        const auto oldX = x, oldY = y;
        for (std::size_t i = 0; i < order.size(); ++i) {
            x[i] = oldX[order[i]];
            y[i] = oldY[order[i]];
        }
    }
};

class SpectrumData : public DataObject<FixedSpectrum> {
  public:
    using DataObject::DataObject;
    void ExploreLoadSpectrumByTime(int, int, int, float, float) override { peaks = Find(data_.spectra, "time").peaks; }
    void ExploreLoadSpectrumByCycle(int, int firstCycle, int) override {
        peaks = Find(data_.spectra, "cycle " + std::to_string(firstCycle)).peaks;
    }
    std::vector<FakePeak> peaks;
};

/// One pass doubles every intensity, so that a test sees how often a chromatogram was smoothed.
class SmoothingProcessor : public ports::SmoothingProcessor {
  public:
    void ExploreSmooth(ports::ChromatogramData& data, const ports::SmoothingParameters&) override {
        for (double& value : dynamic_cast<ChromatogramData&>(data).y)
            value *= 2;
    }
};

class PeakList : public ports::PeakList {
  public:
    explicit PeakList(std::vector<FakePeak> peaks) : peaks_(std::move(peaks)) {}

    int ExplorePeakCount() const override { return static_cast<int>(peaks_.size()); }
    int ExploreFindHighestInRange(double lowMz, double highMz) const override {
        int highest = 0;
        for (int peak = 1; peak <= ExplorePeakCount(); ++peak)
            if (At(peak).mz >= lowMz && At(peak).mz <= highMz &&
                (highest == 0 || At(peak).intensity > At(highest).intensity))
                highest = peak;
        return highest;
    }
    int ExploreFindNearest(double mz, double tolerance) const override {
        int nearest = 0;
        for (int peak = 1; peak <= ExplorePeakCount(); ++peak)
            if (std::abs(At(peak).mz - mz) <= tolerance &&
                (nearest == 0 || std::abs(At(peak).mz - mz) < std::abs(At(nearest).mz - mz)))
                nearest = peak;
        return nearest;
    }
    double ExplorePeakAttribute(int peak, int attribute) const override {
        const FakePeak& of = At(peak);
        const std::map<int, double> attributes{{attributeMz, of.mz},
                                               {attributeCharge, of.charge},
                                               {attributeArea, of.area},
                                               {attributeIsotopeMarker, of.isotopeMarker}};
        return attributes.at(attribute);
    }
    double ExplorePeakCentroid(int peak, int which) const override {
        return which == centroidMz ? At(peak).mz + At(peak).centroidShiftDa : At(peak).intensity;
    }

  private:
    const FakePeak& At(int peak) const { return peaks_.at(static_cast<std::size_t>(peak - 1)); }
    std::vector<FakePeak> peaks_;
};

class DataExploration : public ports::DataExploration {
  public:
    explicit DataExploration(FakeData& data) : data_(data) {}

    VELTRA_FAKE_HANDLE(ChromatogramData, CreateChromatogramData, (), data_)
    VELTRA_FAKE_HANDLE(SpectrumData, CreateSpectrumData, (), data_)
    VELTRA_FAKE_HANDLE(SmoothingProcessor, CreateSmoothingProcessor, ())
    VELTRA_FAKE_HANDLE(PeakList, ExplorePeakList, (const std::string&, int, const ports::SpectrumData& spectrum),
                       dynamic_cast<const SpectrumData&>(spectrum).peaks)

  private:
    FakeData& data_;
};

}  // namespace fake
