// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>
#include <string>

#include "ports/Host.h"

/// A host to be checked against what the comments of its ports promise, and where its things are.
struct HostUnderTest {
    std::shared_ptr<void> surroundings;  ///< what must live as long as the host; released after it
    std::unique_ptr<ports::Host> host;   ///< running, its queue never started
    std::string projectPath;             ///< ends in a separator
    std::string projectName;
    std::string methodFolder;  ///< where new methods may be written, without separator at its end
    std::string methodPath;    ///< a method with a mass spectrometer, one mass range with a "DP", positive
    double expectedMz = 0;     ///< m/z in Da of an ion that the instrument finds
    std::string elementTablePath;
    std::string scanRate;  ///< a text that the instrument offers for scan type 12
};

struct HostUnderTestFactory {
    const char* name;
    std::function<HostUnderTest()> create;
};

inline void PrintTo(const HostUnderTestFactory& factory, std::ostream* out) {
    *out << factory.name;
}

/// The one suite that every implementation of the host's ports has to pass. Instantiate it with a factory:
/// INSTANTIATE_TEST_SUITE_P(Name, HostPortsConformance, testing::Values(HostUnderTestFactory{...})).
class HostPortsConformance : public testing::TestWithParam<HostUnderTestFactory> {
  protected:
    HostPortsConformance() : under_(GetParam().create()) {}

    ports::Host& Host() { return *under_.host; }
    std::unique_ptr<ports::AcquisitionMethod> OpenMethod(const std::string& path);
    std::unique_ptr<ports::MassSpecMethod> FindMassSpecMethod(ports::AcquisitionMethod& method);
    /// Writes a Q1 multiple ion method that ramps DP in three steps. @return its file name
    std::string WriteRampMethod();
    void StartQueue();
    int QueueStatus();
    /// Acquires the method. @return the data file's path
    std::string AcquireRamp();

    HostUnderTest under_;
};
