// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <algorithm>
#include <boost/make_shared.hpp>
#include <numeric>
#include <pwiz/data/msdata/MSData.hpp>
#include <pwiz/data/msdata/Serializer_mzML.hpp>
#include <pwiz/utility/misc/SHA1Calculator.hpp>
#include <sstream>
#include <stdexcept>
#include <string_view>

#include "orvanel/data/MzmlAdapter.h"
#include "orvanel/methods/Ramp.h"
#include "support/NumberText.h"

namespace orvanel {
namespace {

using namespace pwiz::cv;
namespace msdata = pwiz::msdata;
using pwiz::data::ParamContainer;
using support::RoundTripText;

bool IsTrapScan(int scanType) {
    return scanType >= static_cast<int>(ScanType::EnhancedProductIon);
}

int MsLevelOf(int scanType) {
    if (scanType == static_cast<int>(ScanType::EnhancedProductIon)) return 2;
    return scanType == static_cast<int>(ScanType::Ms3) ? 3 : 1;
}

void AddUserParam(ParamContainer& container, const std::string& name, const std::string& value,
                  const std::string& type = "xsd:string", CVID unit = CVID_Unknown) {
    container.userParams.emplace_back(name, value, type, unit);
}

/// AF2 is on the instrument model's own scale.
CVID UnitOf(const std::string& parameterId) {
    return parameterId == "AF2" ? CVID_Unknown : UO_volt;
}

using ParameterTables = std::vector<std::vector<Parameter>>;

/// What the tables of all mass ranges say alike.
std::vector<Parameter> Common(const ParameterTables& tables) {
    if (tables.empty()) return {};
    auto common = tables.front();
    std::erase_if(common, [&](const Parameter& parameter) {
        return std::any_of(tables.begin(), tables.end(), [&](const std::vector<Parameter>& table) {
            return FindParameter(table, parameter.id) != parameter.value;
        });
    });
    return common;
}

void AddApplied(ParamContainer& container, const Parameter& parameter) {
    AddUserParam(container, "applied " + parameter.id, RoundTripText(DecimalValue(parameter.value)), "xsd:double",
                 UnitOf(parameter.id));
}

/// The window of a full width around an m/z.
void SetIsolation(msdata::IsolationWindow& window, double mz, double widthDa) {
    window.set(MS_isolation_window_target_m_z, RoundTripText(mz), MS_m_z);
    window.set(MS_isolation_window_lower_offset, RoundTripText(widthDa / 2), MS_m_z);
    window.set(MS_isolation_window_upper_offset, RoundTripText(widthDa / 2), MS_m_z);
}

/// Builds the document of one acquisition.
class MzmlBuilder {
  public:
    explicit MzmlBuilder(const AcquiredData& data) : data_(data) {}

    void Build(msdata::MSData& document);

  private:
    void DescribeFile(msdata::MSData& document) const;
    void DescribeInstrument(msdata::MSData& document) const;
    msdata::SpectrumPtr MakeSpectrum(const CycleRecord& cycle, std::size_t index) const;
    void AddScan(msdata::Spectrum& spectrum, const CycleRecord& cycle) const;
    msdata::Precursor MakePrecursor(double mz, double widthDa, const std::string& role) const;
    void AddPrecursors(msdata::Spectrum& spectrum, const CycleRecord& cycle) const;
    msdata::ChromatogramPtr MakeTotal(std::size_t index) const;
    msdata::ChromatogramPtr MakeTrace(std::size_t massRange, std::size_t index) const;
    void AddTraceEnergy(msdata::Precursor& precursor, const std::vector<Parameter>& applied) const;
    msdata::ChromatogramPtr MakeChromatogram(const std::string& id, std::size_t index, CVID kind,
                                             const std::vector<double>& intensity) const;
    void AddPolarity(ParamContainer& container) const {
        container.set(data_.experiment.polarity == 1 ? MS_negative_scan : MS_positive_scan);
    }

    const AcquiredData& data_;
};

void MzmlBuilder::DescribeFile(msdata::MSData& document) const {
    document.id = data_.methodName.empty() ? "acquisition" : data_.methodName;
    document.cvs = msdata::defaultCVList();
    auto& content = document.fileDescription.fileContent;
    if (IsTrapScan(data_.experiment.scanType)) {
        content.set(MsLevelOf(data_.experiment.scanType) == 1 ? MS_MS1_spectrum : MS_MSn_spectrum);
        content.set(MS_profile_spectrum);
    } else {
        content.set(data_.experiment.scanType == static_cast<int>(ScanType::MultipleReaction) ? MS_SRM_chromatogram
                                                                                              : MS_SIM_chromatogram);
    }
    content.set(MS_TIC_chromatogram);
    AddUserParam(content, dataParameter::simulated, "simulated data: nothing here was measured");
    AddUserParam(content, "seed", std::to_string(data_.seed), "xsd:unsignedLong");
    std::string compounds;
    for (const auto& compound : data_.compounds)
        compounds += (compounds.empty() ? "" : ", ") + compound;
    AddUserParam(content, "compounds", compounds);
    if (!data_.faults.empty()) AddUserParam(content, "injected faults", data_.faults);
    AddUserParam(content, "scan type", std::to_string(data_.experiment.scanType), "xsd:int");
    AddUserParam(content, "scans summed", std::to_string(data_.experiment.scansToSum), "xsd:int");
    if (data_.ramp) {
        AddUserParam(content, dataParameter::rampParameter, data_.ramp->id);
        AddUserParam(content, "ramp start", RoundTripText(data_.cycles.front().rampValue), "xsd:double",
                     UnitOf(data_.ramp->id));
        AddUserParam(content, "ramp stop", RoundTripText(data_.cycles.back().rampValue), "xsd:double",
                     UnitOf(data_.ramp->id));
        AddUserParam(content, "ramp step", RoundTripText(DecimalValue(data_.ramp->step)), "xsd:double",
                     UnitOf(data_.ramp->id));
    }

    auto source = boost::make_shared<msdata::SourceFile>("method", document.id, "file:///");
    source->set(MS_scan_number_only_nativeID_format);
    source->set(MS_text_format);
    source->set(MS_SHA_1, pwiz::util::SHA1Calculator::hash(data_.methodText));
    document.fileDescription.sourceFilePtrs.push_back(source);
}

void MzmlBuilder::DescribeInstrument(msdata::MSData& document) const {
    auto software = boost::make_shared<msdata::Software>("Orvanel");
    software->set(MS_custom_unreleased_software_tool, "Orvanel");
    software->version = VELTRA_VERSION;
    document.softwarePtrs.push_back(software);

    auto instrument = boost::make_shared<msdata::InstrumentConfiguration>("IC1");
    instrument->set(MS_instrument_model);
    AddUserParam(*instrument, "model name", data_.modelName);
    AddUserParam(*instrument, "model code", std::to_string(data_.modelCode), "xsd:int");
    AddUserParam(*instrument, dataParameter::simulated, "the instrument is simulated");
    instrument->componentList.emplace_back(MS_electrospray_ionization, 1);
    instrument->componentList.emplace_back(MS_quadrupole, 2);
    instrument->componentList.emplace_back(
        IsTrapScan(data_.experiment.scanType) ? MS_axial_ejection_linear_ion_trap : MS_quadrupole, 3);
    instrument->componentList.emplace_back(MS_electron_multiplier, 4);
    instrument->softwarePtr = software;
    document.instrumentConfigurationPtrs.push_back(instrument);

    auto processing = boost::make_shared<msdata::DataProcessing>("Orvanel_acquisition");
    msdata::ProcessingMethod method;
    method.order = 0;
    method.softwarePtr = software;
    method.set(MS_Conversion_to_mzML);
    processing->processingMethods.push_back(method);
    document.dataProcessingPtrs.push_back(processing);
}

msdata::Precursor MzmlBuilder::MakePrecursor(double mz, double widthDa, const std::string& role) const {
    msdata::Precursor precursor;
    SetIsolation(precursor.isolationWindow, mz, widthDa);
    AddUserParam(precursor.isolationWindow, dataParameter::precursor, role);
    msdata::SelectedIon ion;
    ion.set(MS_selected_ion_m_z, RoundTripText(mz), MS_m_z);
    precursor.selectedIons.push_back(ion);
    return precursor;
}

void MzmlBuilder::AddPrecursors(msdata::Spectrum& spectrum, const CycleRecord& cycle) const {
    if (MsLevelOf(data_.experiment.scanType) == 1) return;
    const auto applied = Common(cycle.applied);
    auto first = MakePrecursor(data_.experiment.firstPrecursor, data_.isolation.q1, "first");
    first.activation.set(MS_CID);
    if (const auto energy = FindParameter(applied, "CE"))
        first.activation.set(MS_collision_energy, RoundTripText(DecimalValue(*energy)), UO_electronvolt);
    spectrum.precursors.push_back(first);
    if (data_.experiment.scanType != static_cast<int>(ScanType::Ms3)) return;

    // The trap isolates the second precursor and excites it at its resonance.
    auto second = MakePrecursor(data_.experiment.secondPrecursor, data_.isolation.trap, "second");
    second.activation.set(MS_trap_type_collision_induced_dissociation);
    if (const auto af2 = FindParameter(applied, "AF2"))
        AddUserParam(second.activation, "AF2", RoundTripText(DecimalValue(*af2)), "xsd:double");
    AddUserParam(second.activation, "excitation time", RoundTripText(data_.experiment.excitationTimeMs), "xsd:double",
                 UO_millisecond);
    spectrum.precursors.push_back(second);
}

void MzmlBuilder::AddScan(msdata::Spectrum& spectrum, const CycleRecord& cycle) const {
    spectrum.scanList.set(data_.experiment.scansToSum > 1 ? MS_sum_of_spectra : MS_no_combination);
    msdata::Scan scan;
    scan.set(MS_scan_start_time, RoundTripText(cycle.timeMinutes), UO_minute);
    if (!data_.experiment.dynamicFillTime)
        scan.set(MS_ion_injection_time, RoundTripText(data_.experiment.fixedFillTimeMs), UO_millisecond);
    AddUserParam(scan, "scan rate in Da/s", RoundTripText(data_.experiment.scanRate), "xsd:double");
    const auto common = Common(cycle.applied);
    for (std::size_t i = 0; i < data_.experiment.massRanges.size(); ++i) {
        const auto& range = data_.experiment.massRanges[i];
        msdata::ScanWindow window;
        window.set(MS_scan_window_lower_limit, RoundTripText(range.start), MS_m_z);
        window.set(MS_scan_window_upper_limit, RoundTripText(range.stop), MS_m_z);
        for (const auto& parameter : cycle.applied[i])
            if (!FindParameter(common, parameter.id)) AddApplied(window, parameter);
        scan.scanWindows.push_back(window);
    }
    spectrum.scanList.scans.push_back(scan);
}

msdata::SpectrumPtr MzmlBuilder::MakeSpectrum(const CycleRecord& cycle, std::size_t index) const {
    auto spectrum = boost::make_shared<msdata::Spectrum>();
    const int msLevel = MsLevelOf(data_.experiment.scanType);
    spectrum->index = index;
    spectrum->id = "scan=" + std::to_string(cycle.cycle);
    spectrum->set(msLevel == 1 ? MS_MS1_spectrum : MS_MSn_spectrum);
    spectrum->set(MS_ms_level, msLevel);
    if (msLevel == 1) spectrum->set(MS_zoom_scan);
    spectrum->set(MS_profile_spectrum);
    AddPolarity(*spectrum);
    const double total = std::accumulate(cycle.intensity.begin(), cycle.intensity.end(), 0.0);
    spectrum->set(MS_total_ion_current, RoundTripText(total));
    if (!cycle.mz.empty()) {
        const auto peak = std::max_element(cycle.intensity.begin(), cycle.intensity.end());
        const auto position = static_cast<std::size_t>(peak - cycle.intensity.begin());
        spectrum->set(MS_base_peak_m_z, RoundTripText(cycle.mz[position]), MS_m_z);
        spectrum->set(MS_base_peak_intensity, RoundTripText(*peak), MS_counts_per_second);
    }
    AddUserParam(*spectrum, dataParameter::cycle, std::to_string(cycle.cycle), "xsd:int");
    if (data_.ramp) {
        AddUserParam(*spectrum, dataParameter::rampParameter, data_.ramp->id);
        AddUserParam(*spectrum, dataParameter::rampValue, RoundTripText(cycle.rampValue), "xsd:double",
                     UnitOf(data_.ramp->id));
    }
    for (const auto& parameter : Common(cycle.applied))
        AddApplied(*spectrum, parameter);
    AddScan(*spectrum, cycle);
    AddPrecursors(*spectrum, cycle);
    spectrum->setMZIntensityArrays(cycle.mz, cycle.intensity, MS_counts_per_second);
    return spectrum;
}

msdata::ChromatogramPtr MzmlBuilder::MakeChromatogram(const std::string& id, std::size_t index, CVID kind,
                                                      const std::vector<double>& intensity) const {
    auto chromatogram = boost::make_shared<msdata::Chromatogram>();
    chromatogram->id = id;
    chromatogram->index = index;
    chromatogram->set(kind);
    AddPolarity(*chromatogram);
    std::vector<double> times;
    std::vector<double> rampValues;
    for (const auto& cycle : data_.cycles) {
        times.push_back(cycle.timeMinutes);
        rampValues.push_back(cycle.rampValue);
    }
    chromatogram->setTimeIntensityArrays(times, intensity, UO_minute, MS_counts_per_second);
    if (data_.ramp) {
        auto applied = boost::make_shared<msdata::BinaryDataArray>();
        applied->set(MS_non_standard_data_array, data_.ramp->id, UnitOf(data_.ramp->id));
        applied->data = rampValues;
        chromatogram->binaryDataArrayPtrs.push_back(applied);
        AddUserParam(*chromatogram, dataParameter::rampParameter, data_.ramp->id);
    }
    return chromatogram;
}

msdata::ChromatogramPtr MzmlBuilder::MakeTotal(std::size_t index) const {
    std::vector<double> total(data_.cycles.size(), 0.0);
    for (std::size_t i = 0; i < total.size(); ++i) {
        const auto& points = data_.cycles[i].intensity;
        total[i] = std::accumulate(points.begin(), points.end(), 0.0);
        for (const auto& trace : data_.traces)
            total[i] += trace.intensity[i];
    }
    return MakeChromatogram("TIC", index, MS_TIC_chromatogram, total);
}

void MzmlBuilder::AddTraceEnergy(msdata::Precursor& precursor, const std::vector<Parameter>& applied) const {
    precursor.activation.set(MS_CID);
    if (data_.ramp && data_.ramp->id == "CE") {
        precursor.activation.set(MS_collision_energy_ramp_start, RoundTripText(data_.cycles.front().rampValue),
                                 UO_electronvolt);
        precursor.activation.set(MS_collision_energy_ramp_end, RoundTripText(data_.cycles.back().rampValue),
                                 UO_electronvolt);
    } else if (const auto energy = FindParameter(applied, "CE")) {
        precursor.activation.set(MS_collision_energy, RoundTripText(DecimalValue(*energy)), UO_electronvolt);
    }
}

msdata::ChromatogramPtr MzmlBuilder::MakeTrace(std::size_t massRange, std::size_t index) const {
    const MassTrace& trace = data_.traces[massRange];
    const auto& applied = data_.cycles.front().applied[massRange];
    const bool transition = data_.experiment.scanType == static_cast<int>(ScanType::MultipleReaction);
    const std::string id = (transition ? "SRM SIC Q1=" + RoundTripText(trace.q1) + " Q3=" + RoundTripText(trace.q3)
                                       : "SIM SIC Q1=" + RoundTripText(trace.q1)) +
                           " mass=" + std::to_string(massRange);
    auto chromatogram =
        MakeChromatogram(id, index, transition ? MS_SRM_chromatogram : MS_SIM_chromatogram, trace.intensity);
    chromatogram->precursor = MakePrecursor(trace.q1, data_.isolation.q1, "first");
    if (transition) {
        AddTraceEnergy(chromatogram->precursor, applied);
        SetIsolation(chromatogram->product.isolationWindow, trace.q3, data_.isolation.q3);
    }
    AddUserParam(*chromatogram, "dwell time", RoundTripText(trace.dwellTimeMs), "xsd:double", UO_millisecond);
    for (const auto& parameter : applied)
        if (!data_.ramp || parameter.id != data_.ramp->id) AddApplied(*chromatogram, parameter);
    return chromatogram;
}

void MzmlBuilder::Build(msdata::MSData& document) {
    DescribeFile(document);
    DescribeInstrument(document);
    document.run.id = "run";
    document.run.startTimeStamp = data_.startTimestamp;
    document.run.defaultInstrumentConfigurationPtr = document.instrumentConfigurationPtrs.front();
    document.run.defaultSourceFilePtr = document.fileDescription.sourceFilePtrs.front();
    if (IsTrapScan(data_.experiment.scanType)) {
        auto spectra = boost::make_shared<msdata::SpectrumListSimple>();
        spectra->dp = document.dataProcessingPtrs.front();
        for (const auto& cycle : data_.cycles)
            spectra->spectra.push_back(MakeSpectrum(cycle, spectra->spectra.size()));
        document.run.spectrumListPtr = spectra;
    }
    auto chromatograms = boost::make_shared<msdata::ChromatogramListSimple>();
    chromatograms->dp = document.dataProcessingPtrs.front();
    chromatograms->chromatograms.push_back(MakeTotal(0));
    for (std::size_t i = 0; i < data_.traces.size(); ++i)
        chromatograms->chromatograms.push_back(MakeTrace(i, i + 1));
    document.run.chromatogramListPtr = chromatograms;
}

void CheckLengths(const AcquiredData& data) {
    const std::size_t ranges = data.experiment.massRanges.size();
    if (data.cycles.empty()) throw std::runtime_error("there are no cycles");
    for (const auto& cycle : data.cycles) {
        const std::string where = "cycle " + std::to_string(cycle.cycle);
        if (cycle.mz.size() != cycle.intensity.size())
            throw std::runtime_error(where + " has " + std::to_string(cycle.mz.size()) + " m/z values but " +
                                     std::to_string(cycle.intensity.size()) + " intensities");
        if (cycle.applied.size() != ranges)
            throw std::runtime_error(where + " has " + std::to_string(cycle.applied.size()) +
                                     " tables of parameters for " + std::to_string(ranges) + " mass ranges");
    }
    if (data.traces.size() > ranges)
        throw std::runtime_error("there are " + std::to_string(data.traces.size()) + " traces for " +
                                 std::to_string(ranges) + " mass ranges");
    for (const auto& trace : data.traces)
        if (trace.intensity.size() != data.cycles.size())
            throw std::runtime_error("the trace of m/z " + RoundTripText(trace.q1) + " has " +
                                     std::to_string(trace.intensity.size()) + " points but there are " +
                                     std::to_string(data.cycles.size()) + " cycles");
}

/// An index without entries is against the schema: it is left out, and the checksum, which covers the text up to its
/// own tag, made anew.
std::string WithoutEmptyIndex(std::string text) {
    const auto empty = text.rfind("    <index name=\"spectrum\">\n    </index>\n");
    if (empty == std::string::npos) return text;
    text.erase(empty, text.find("</index>\n", empty) + 9 - empty);
    constexpr std::string_view count = "<indexList count=\"2\"";
    text[text.rfind(count) + count.size() - 2] = '1';
    constexpr std::string_view checksumTag = "<fileChecksum>";
    const auto checksum = text.rfind(checksumTag) + checksumTag.size();
    const auto hash = pwiz::util::SHA1Calculator::hash(text.substr(0, checksum));
    return text.replace(checksum, hash.size(), hash);
}

}  // namespace

std::string WriteMzml(const AcquiredData& data) {
    CheckLengths(data);
    msdata::MSData document;
    MzmlBuilder(data).Build(document);

    msdata::Serializer_mzML::Config config;
    config.binaryDataEncoderConfig.compression = msdata::BinaryDataEncoder::Compression_Zlib;
    config.binaryDataEncoderConfig.precisionOverrides[MS_intensity_array] = msdata::BinaryDataEncoder::Precision_32;
    std::ostringstream out;
    msdata::Serializer_mzML(config).write(out, document, nullptr, false);
    if (!out) throw std::runtime_error("the mzML text could not be built");
    return WithoutEmptyIndex(out.str());
}

}  // namespace orvanel
