// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "orvanel/instrument/InstrumentModel.h"
#include "orvanel/methods/MethodDocument.h"
#include "ports/ParameterTable.h"

namespace orvanel {

/// A method that is open in the host, shared by the handles of its parts.
struct OpenDocument {
    MethodDocument document;
    bool unsavedChanges = false;
    std::shared_ptr<const InstrumentModel> model;
    int currentOperatingMode = 0;

    /// The parts by their indexes, counted from 0. @throws ports::HostError when there is no such part (any more)
    MassSpecRecord& MassSpec(std::size_t device);
    PeriodRecord& Period(std::size_t device, int index);
    ExperimentRecord& Experiment(std::size_t device, int period, int index);
    MassRangeRecord& MassRange(std::size_t device, int period, int experiment, int index);
};

/// The table that new ranges start with, or the first range's where none is kept.
const std::vector<Parameter>& TableForNewRanges(const ExperimentRecord& experiment);

/// A parameter table of an open method.
class DocumentParameterTable : public ports::ParameterTable {
  public:
    /// @param locate finds the table anew at every call; throws ports::HostError when it is gone
    DocumentParameterTable(std::shared_ptr<OpenDocument> method, std::function<std::vector<Parameter>&()> locate);

    int HostGetParameterCount() const override;
    int HostFindParameter(const std::string& id) const override;
    std::string HostGetParameterId(int index) const override;
    float HostGetParameterValue(int index) const override;
    void HostSetParameterValue(int index, float value) override;

  private:
    Parameter& At(int index) const;

    std::shared_ptr<OpenDocument> method_;
    std::function<std::vector<Parameter>&()> locate_;
};

}  // namespace orvanel
