// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/clsInfo_Settings.h"
#include "tests/support_files/NewProject.h"

/// A starter method and settings made from what the compound file knows, and a new project cannot: runs that test logs,
/// reports and faults are to find all fragments. For projects of compounds that ship.

/// Writes the starter method anew: DP 30 V and CEP 10 V below their best.
void TuneStarterMethod(const NewProject& project, std::int32_t modelCode);
/// Ranges from below the lightest fragment to above the precursor, and the mean of the fragments' best CE.
void TuneSettings(const NewProject& project, veltra::clsInfo_Settings& settings);
