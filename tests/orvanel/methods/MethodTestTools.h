// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "orvanel/instrument/InstrumentModel.h"
#include "orvanel/methods/MethodDocument.h"
#include "ports/HostError.h"

/// The text of the HostError that the action throws, with its number in front; empty when it throws none.
template <typename Action>
std::string HostErrorOf(Action action) {
    try {
        action();
    } catch (const ports::HostError& error) {
        return std::to_string(error.Number()) + ": " + error.what();
    }
    return "";
}

/// Without flushing to disk, for tests that write thousands of files.
inline void WriteText(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

inline orvanel::InstrumentModel ModelForTests() {
    orvanel::InstrumentModel model;
    model.code = 27;
    model.name = "Test trap";
    model.quadrupoleMz = {5, 1250};
    model.trapMz = {50, 1000};
    model.parameterLimits = {
        {"DP", {0, 300}}, {"EP", {1, 15}}, {"CE", {5, 150.3}}, {"AF2", {0, 100}}, {"IS", {0, 5500}}};
    for (const int scanType : {11, 12, 13})
        model.scanRates[scanType] = {{"250", 250, 0.03}, {"1000", 1000, 0.06}};
    model.operatingModes = {0, 1};
    return model;
}

/// A syringe pump, then a mass spectrometer with one MS/MS/MS experiment that can be acquired.
inline orvanel::MethodDocument MethodForTests() {
    using namespace orvanel;
    ExperimentRecord experiment;
    experiment.scanType = 13;
    experiment.firstPrecursor = 609.2807;
    experiment.secondPrecursor = 397.2122;
    experiment.sourceGas = {{"CUR", 20}, {"IS", 5500}};
    experiment.massRanges.push_back({100, 400, 0.06, 0.06, {{"DP", 60}, {"EP", 10}, {"CE", 35.3F}, {"AF2", 0.1F}}});
    MassSpecRecord massSpec;
    massSpec.periods.push_back({51, RampRecord{"AF2", 0, 100, 2}, {experiment}});
    MethodDocument document;
    document.comment = "first line\nsecond <line> & \"more\"";
    document.devices.push_back({"SyringePump", "Pump", std::nullopt, {{"Flow", "10"}}});
    document.devices.push_back({"MassSpectrometer", "Test trap", massSpec, {}});
    return document;
}
