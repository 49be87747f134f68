// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "ports/MessageBoxes.h"
#include "support/Disk.h"

namespace veltra {

/// Everything the user chooses for an optimisation run. Nothing is validated on setting; AreSettingsValid checks before
/// a run.
class clsInfo_Settings {
  public:
    std::string OrvanelProjectName;  ///< derived, never stored
    std::string StarterMethodFilePath;
    std::string CompoundName;
    double ExpectedMZ = 0;                     ///< Da
    std::int32_t Polarity = 0;                 ///< 0 positive, 1 negative
    std::int32_t Q1Resolution = 1;             ///< 0 low, 1 unit, 2 high, 3 open
    std::string Advanced_ERScanRate = "1000";  ///< Da/s, as the host's text
    std::int32_t Advanced_ERCycles = 20;
    float Advanced_Q1MIDPRampStart = 0;   ///< V
    float Advanced_Q1MIDPRampStop = 100;  ///< V
    float Advanced_Q1MIDPRampStep = 5;    ///< V
    double Advanced_Q1MIDwellTime = 100;  ///< ms
    std::string Advanced_EPIScanRate = "1000";
    std::int16_t Advanced_EPINum2ndPrec = 5;
    std::int32_t Advanced_EPICycles = 3;
    float Advanced_EPIMassStart = 225;  ///< Da
    float Advanced_EPIMassEnd = 1000;   ///< Da
    float Advanced_EPI_CE = 40;         ///< V
    float Advanced_EPI_CES = 15;        ///< V
    double Advanced_MRMDwellTime = 50;  ///< ms
    std::string Advanced_MS3ScanRate = "1000";
    double Advanced_MS3FixedFillTime = 20;  ///< ms
    bool Advanced_MS3UseQ0Trapping = true;
    float Advanced_MS3MassStart = 100;  ///< Da
    float Advanced_MS3MassEnd = 1000;   ///< Da
    bool Advanced_MS3SaveAllFinalMethods = true;

    /// @param strIniPath the settings file, read by ReadGlobalSettings and written by WriteGlobalSettings
    /// @param disk must outlive the settings
    explicit clsInfo_Settings(std::string strIniPath, const support::Disk& disk = support::SystemDisk())
        : iniPath_(std::move(strIniPath)), disk_(&disk) {}

    /// The settings file beside the program.
    static std::string DefaultIniPath();

    /// Overlays the file on the current values, as ReadSettings (model/SettingsKeys.h) does; nothing when there is no
    /// file.
    /// @return a line for each value that was ignored, to be logged: it says what is used instead
    /// @throws support::FileError when the file is there and cannot be read as a whole; then nothing is changed
    std::vector<std::string> ReadGlobalSettings();
    /// Stores every setting. @return why the file could not be written, which stops nothing; empty when it was
    std::string WriteGlobalSettings() const;
    /// The same, and reads back what was stored. @throws support::FileError that says what could not be stored, and why
    void StoreGlobalSettings() const;

    /// The left and right column of the settings text block, line beside line, joined by CR LF.
    std::string GetSettingsHeadingColumn() const;
    std::string GetCurrentGlobalSettingsString() const;

    /// Shows the first problem in a message box and returns false.
    bool AreSettingsValid(ports::MessageBoxes& messageBoxes) const;

    /// "Low", "Unit", "High" or "Open"; empty for any other code.
    std::string Q1ResolutionWord() const;

    /// The range that a DP ramp's step must lie in, in the direction of the ramp.
    struct StepRange {
        float low = 0;
        float high = 0;
        bool Contains(float step) const { return low <= step && step <= high; }
    };
    /// @param start, stop different from each other, V
    static StepRange AllowedStepRange(float start, float stop);
    /// The message for a step outside the range.
    static std::string StepOutOfRangeMessage(const StepRange& range);

  private:
    std::string FirstProblem() const;

    std::string iniPath_;
    const support::Disk* disk_;
};

}  // namespace veltra
