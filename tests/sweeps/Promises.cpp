// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/sweeps/Promises.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "support/Files.h"
#include "support/Paths.h"
#include "support/Text.h"

namespace {

using Outcome = ShortRun::Outcome;
using ports::MessageIcon;

/// What the message about a failing operation begins with. The first row that fits counts.
struct Beginning {
    const char* operation;  ///< or the start of its name
    const char* message;
};
constexpr Beginning beginnings[] = {
    {"TolmCreateService", "Tolm Batch: Error during Tolm initialization"},
    {"TolmInitialize", "Tolm Batch: Error during Tolm initialization"},
    {"TolmLogon", "Tolm Batch: Error during Tolm logon"},
    {"TolmSelectProject", "Tolm Batch: Error during Tolm logon"},
    {"TolmLogoff", "Tolm Batch: Error during Tolm logoff"},
    {"TolmSubmitBatch", "Tolm Batch: Error submitting Tolm Batch"},
    {"Tolm", "Tolm Batch: Error during creation of new Tolm Batch"},
    {"HostQueueServer", "Queue: Error "},  // when the queue starts, or while it is waited for
    {"HostQueue", "Queue: Error starting Queue"},
    {"CreatePause", "Queue: Error "},  // the same
    {"HostSleep", "Queue: Error "},
    {"CreateInstrumentHelper", "Error during creation of the "},  // acquisition or final method
    {"GetStepSizeForScanRate", "Error during creation of the "},
    {"CreateDataExploration", "Explore Data: Error during Explore Data initialization"},
    {"CreateSmoothingProcessor", "Explore Data: Error during smoothing of graph"},
    {"Create", "Explore Data: Error during "},  // initialization, or getting a copy
    {"ExploreSetDataFile", "Explore Data: Error during initialization using <DIR>"},
    {"ExploreLoadTIC", "Explore Data: Error loading TIC"},
    {"ExploreLoadXICOverlay", "Explore Data: Error loading XIC overlay"},
    {"ExploreLoadXIC", "Explore Data: Error loading XIC"},
    {"ExploreLoadSpectrumByTime", "Explore Data: Error loading spectrum"},
    {"ExploreLoadSpectrumByCycle", "Explore Data: Error loading cycle dependent spectrum"},
    {"ExploreSmooth", "Explore Data: Error during smoothing of graph"},
    {"ExploreFind", "Explore Data: Error getting highest peak in range "},
    {"Explore", "Explore Data: Error "},  // each reader's own
    {"GetX", "Explore Data: Error during getting copy of "},
    {"GetY", "Explore Data: Error during getting copy of "},
    {"SetX", "Explore Data: Error during getting copy of "},
    {"SetY", "Explore Data: Error during getting copy of "},
    {"HostEnumDeviceMethods", "Acquire: Error during getting of mass spec method"},
    {"IsMassSpecMethod", "Acquire: Error during getting of mass spec method"},
    {"AsMassSpecMethod", "Acquire: Error during getting of mass spec method"},
    {"HostGetPeriod", "Acquire: Error loading <DIR>"},
    {"HostGetExperiment", "Acquire: Error loading <DIR>"},
    {"HostGetExtendedExperiment", "Acquire: Error loading <DIR>"},
    {"HostGetMethodOperatingMode", "Acquire: Error loading <DIR>"},
    {"HostGetCurrentOperatingMode", "Acquire: Error loading <DIR>"},
    {"HostSetScanType", "Acquire: Error during method initialization"},
    {"HostReset", "Acquire: Error during method initialization"},
    {"HostSetScansToSum", "Acquire: Error during method initialization"},
    {"HostSetPolarity", "Acquire: Error during method initialization"},
    {"HostSetQ1Resolution", "Acquire: Error during method initialization"},
    {"HostSetMassRange", "Acquire: Error during setting of mass range to "},
    {"HostSetFirstPrecursor", "Acquire: Error during setting "},
    {"HostSetSecondPrecursor", "Acquire: Error during setting of MS/MS/MS precursors to "},
    {"HostSetScanRate", "Acquire: Error during setting of scan rate to "},
    {"HostSetDwellTime", "Acquire: Error during setting of dwell time to "},
    {"HostSetRampParameter", "Acquire: Error during setting of "},
    {"HostSetCycles", "Acquire: Error setting the number of cycles to "},
    {"HostSetExcitationTime", "Error during creation of the final method"},
    {"HostSetParameterValue", "Acquire: Error during setting of "},
    {"HostSet", "Acquire: Error during setting of fill time"},
    {"HostSaveMethodAs", "Acquire: Error during saving of <DIR>"},
    {"HostOptimizeMassRange", "Acquire: Error during optimization of mass range"},
    {"HostGetExpectedDuration", "Acquire: Error getting the expected duration"},
    {"HostGetParameterTable", "Acquire: Error during "},  // setting a parameter, or reading the initial ones
    {"HostFindParameter", "Acquire: Error during setting of "},
    {"HostGetParameter", "Acquire: Error during updating of initial compound parameters"},
    {"HostGetMassRange", "Acquire: Error during "},  // whatever is set in it; the count too
    {"HostAddMassRange", "Acquire: Error during "},
};

/// Faults that are told in another way than by a box with number and text, and why.
struct Exception {
    Phase phase;
    const char* operation;  ///< or the start of its name
    int callsBefore;        ///< of the operation, to which this does not apply
    Telling telling;
    const char* message;
    const char* reason;
};
constexpr Exception exceptions[] = {
    {Phase::Check, "", 0, Telling::Silent, "", "The instrument is asked again at Start"},
    {Phase::Initialisation, "AttachToRunningApplication", 0, Telling::Box,
     "You must start Orvanel before running the optimization", "Whatever is wrong with the host, that is what helps"},
    {Phase::Initialisation, "GetAcquisitionService", 0, Telling::Box,
     "Acquire: Error loading <DIR>/Projects/caffeine/Acquisition Methods/Start.xmt.  Invalid acquisition method.",
     "Without the service no method can be loaded"},
    {Phase::Initialisation, "HostOpenMethod", 0, Telling::Box,
     "Acquire: Error loading <DIR>/Projects/caffeine/Acquisition Methods/Start.xmt.  Invalid acquisition method.",
     "What is wrong with a file that cannot be used does not matter"},
    {Phase::Run, "GetAcquisitionService", 0, Telling::Box, ".xmt.  Invalid acquisition method.", "The same"},
    {Phase::Run, "HostOpenMethod", 0, Telling::Box, ".xmt.  Invalid acquisition method.", "The same"},
    {Phase::Run, "HostQueueReset", 0, Telling::Silent, "", "There may be nothing to reset"},
    {Phase::Run, "RegRead", 0, Telling::Whatever, "", "A status that cannot be read counts as 0: not the end"},
    {Phase::FinalMethods, "TolmLogoff", 0, Telling::Warning, "", "The run has ended already"},
    {Phase::FinalMethods, "GetAcquisitionService", 0, Telling::LogLine, ".xmt.  Invalid acquisition method.",
     "A final method that cannot be written never stops the run"},
    {Phase::FinalMethods, "HostOpenMethod", 0, Telling::LogLine, ".xmt.  Invalid acquisition method.", "The same"},
    {Phase::FinalMethods, "", 0, Telling::LogLine, "", "The same"},
};

/// By which the run's own rules end it or refuse to begin, whatever is the cause of what they look at.
constexpr const char* rules[] = {"No peaks found within ",
                                 "No chromatogram data points found, could not optimize ",
                                 "No EPI spectrum peaks found.",
                                 "Queue: The program timed out.",
                                 "The instrument cannot perform the ",
                                 "Acquire: The method doesn't contain a mass spec method.",
                                 "The instrument model cannot be read from Orvanel",
                                 "Unable to locate Data folder"};

bool StartsWith(const std::string& text, const char* start) {
    return text.starts_with(start);
}

/// Without the time, and with "<DIR>" for the project's folder.
std::vector<std::string> TextsOf(const ShortRun& run, const std::vector<std::string>& displayLog) {
    std::vector<std::string> texts;
    texts.reserve(displayLog.size());
    for (const auto& line : displayLog)
        texts.push_back(run.Anonymous(line.substr(line.find("]   ") + 4)));
    return texts;
}

int CountSince(const HostCalls& calls, std::size_t from, const char* start) {
    return static_cast<int>(std::count_if(calls.texts.begin() + static_cast<std::ptrdiff_t>(from), calls.texts.end(),
                                          [&](const std::string& text) { return text.starts_with(start); }));
}

std::map<std::string, std::string> ProjectFiles(const ShortRun& run) {
    std::map<std::string, std::string> files;
    const std::string root = run.project.folder.File("Projects");
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        const std::string name = entry.path().filename().string();
        if (!entry.is_regular_file() || name == "Log.txt" || name == "Results.txt") continue;
        files[run.Anonymous(entry.path().string())] = run.Anonymous(support::ReadWholeFile(entry.path().string()));
    }
    return files;
}

std::string VeskOf(const std::map<std::string, std::string>& files, const std::string& methodPath) {
    const std::string name = support::FileNameOf(methodPath);
    const std::string vesk = "/" + name.substr(0, name.size() - 4) + ".vesk";
    for (const auto& [path, content] : files)
        if (path.ends_with(vesk)) return path;
    return {};
}

void ExpectLoggedOff(const ShortRun& run, const Fault& fault) {
    EXPECT_EQ(run.run.batch, nullptr);
    if (fault.operation == "TolmLogon") return;  // with a wrong token, or none, nobody can
    const int logons = run.calls.SucceededCount("TolmLogon");
    EXPECT_GE(run.calls.CountOf("TolmLogoff"), logons);
    if (!fault.cannotLogOff) {
        EXPECT_EQ(run.calls.SucceededCount("TolmLogoff"), logons);
    }
}

/// What is logged only where a run ends before its time.
bool IsOfAnEarlyEnd(const ShortRun& run, const std::string& text) {
    const auto& boxes = run.boxes.shown;
    constexpr const char* starts[] = {"Generating Results.txt file...", "Optimization aborted!", "Unable to create ",
                                      "Optimized AF2 = ", "No peaks found"};
    return text.find("N/A") != std::string::npos ||
           std::any_of(std::begin(starts), std::end(starts),
                       [&](const char* start) { return StartsWith(text, start); }) ||
           std::any_of(boxes.begin(), boxes.end(), [&](const auto& box) { return run.Anonymous(box.text) == text; });
}

/// The log is that of the undisturbed run up to the fault, and as long as that one goes on after it; nothing is logged
/// twice.
void ExpectLogOf(const Reference& reference, const ShortRun& run, const Fault& fault) {
    const auto texts = TextsOf(run, run.display.log);
    const auto same = std::mismatch(texts.begin(), texts.end(), reference.log.begin(), reference.log.end()).first;
    const auto before = static_cast<std::ptrdiff_t>(run.LinesBeforeFault().size());
    if (run.calls.FiredCount() > 0) {
        EXPECT_GE(same - texts.begin(), before) << run.LogText();
    }
    std::map<std::string, int> counts;
    for (const auto& text : texts)
        if (text.starts_with("--> ")) {
            EXPECT_EQ(++counts[text], 1) << text;
        }
    if (!fault.keepsFiles || fault.telling == Telling::LogLine || fault.telling == Telling::Whatever) return;
    // The stage in which it happens may still tell its findings.
    for (auto text = same; text != texts.end(); ++text) {
        const auto usual = std::count(reference.log.begin(), reference.log.end(), *text);
        EXPECT_TRUE(usual > 0 || IsOfAnEarlyEnd(run, *text)) << *text << " in\n" << run.LogText();
        EXPECT_LE(std::count(texts.begin(), texts.end(), *text), std::max<std::ptrdiff_t>(usual, 1)) << run.LogText();
    }
}

void ExpectLogAndReport(const ShortRun& run, Outcome outcome) {
    std::string expected = "Log File: Quantitative Optimization for MS3\n\n";
    std::string logged;
    const auto texts = TextsOf(run, run.display.log);
    for (const auto& text : texts)
        expected += text + "\n";
    for (const auto& line : support::Split(run.LogText(), '\n')) {
        const bool isLine = line.starts_with("[") && line.find("]  ") != std::string::npos;
        logged += (isLine ? line.substr(line.find("]  ") + 3) : line) + "\n";
    }
    if (logged.ends_with("\n\n")) logged.pop_back();
    EXPECT_EQ(logged, expected);
    const std::string end =
        outcome == Outcome::Completed ? "Optimization completed successfully!" : "Optimization aborted!";
    EXPECT_EQ(std::count(texts.begin(), texts.end(), end), 1);
    EXPECT_NE(std::find(texts.end() - std::min<std::ptrdiff_t>(2, std::ssize(texts)), texts.end(), end), texts.end());

    const std::string report = support::ReadWholeFile(run.run.results->VeskOutputFilePath + "Results.txt");
    EXPECT_EQ(report, run.run.results->ReportText(
                          {run.run.settings, run.run.clock, run.run.AbortRequested, run.run.EPAndCEPSupported}));
    EXPECT_EQ(report.find("NaN"), std::string::npos) << report;
    EXPECT_EQ(report.find("Infinity"), std::string::npos) << report;
}

void ExpectFiles(const ShortRun& run, const Fault& fault, const Reference& reference) {
    const auto files = ProjectFiles(run);
    for (const auto& [path, content] : run.finished) {
        const auto found = files.find(run.Anonymous(path));
        ASSERT_NE(found, files.end()) << path << " is lost";
        EXPECT_TRUE(found->second == run.Anonymous(content)) << path << " has changed";
    }
    for (const auto& [path, content] : files) {
        const auto found = reference.files.find(path);
        if (!fault.keepsFiles) {
            EXPECT_FALSE(content.empty()) << path;
            if (path.ends_with(".vesk")) {
                EXPECT_NE(content.find("</indexedmzML>"), std::string::npos) << path;
            }
            continue;
        }
        ASSERT_NE(found, reference.files.end()) << path << " is left behind";
        // A method that was not acquired with may be half built, but not one that a user would take for final.
        const bool isFinished =
            !path.ends_with(".xmt") || path.find("_Final") != std::string::npos || !VeskOf(files, path).empty();
        if (isFinished) {
            EXPECT_TRUE(content == found->second) << path;
        }
    }
}

bool Holds(const std::string& text, const std::vector<std::string>& words) {
    return std::all_of(words.begin(), words.end(),
                       [&](const std::string& word) { return text.find(word) != std::string::npos; });
}

bool IsOfRule(const std::string& text) {
    return std::any_of(std::begin(rules), std::end(rules), [&](const char* rule) { return StartsWith(text, rule); });
}

bool IsOfAnException(const std::string& text) {
    return std::any_of(std::begin(exceptions), std::end(exceptions), [&](const Exception& exception) {
        return *exception.message != '\0' && text.ends_with(exception.message);
    });
}

/// Whether the text is one of those by which failures are told, or by which a rule ends a run.
bool IsKnown(const std::string& text) {
    return std::any_of(std::begin(beginnings), std::end(beginnings),
                       [&](const Beginning& known) { return StartsWith(text, known.message); }) ||
           IsOfAnException(text) || IsOfRule(text);
}

void ExpectTold(const ShortRun& run, Outcome outcome, const Fault& fault) {
    std::vector<RecordedMessageBoxes::Box> boxes = run.boxes.shown;
    for (auto& box : boxes)
        box.text = run.Anonymous(box.text);
    const bool isInitialised = outcome != Outcome::InitializationFailed && outcome != Outcome::SettingsInvalid;
    const auto texts = TextsOf(run, run.display.log);
    for (const auto& box : boxes)
        EXPECT_EQ(std::count(texts.begin(), texts.end(), box.text), isInitialised ? 1 : 0) << box.text;
    if (fault.cannotLogOff && isInitialised && !boxes.empty() && fault.telling != Telling::Warning) {
        EXPECT_EQ(boxes.back().icon, MessageIcon::Warning);
        EXPECT_TRUE(boxes.back().text.starts_with("Tolm Batch: Error during Tolm logoff (Error ")) << boxes.back().text;
        boxes.pop_back();
    }
    switch (fault.telling) {
        case Telling::Box:
        case Telling::Warning:
            ASSERT_EQ(boxes.size(), 1U);
            EXPECT_TRUE(Holds(boxes[0].text, fault.words)) << boxes[0].text;
            EXPECT_EQ(boxes[0].icon,
                      fault.telling == Telling::Box && isInitialised ? MessageIcon::Critical : MessageIcon::Warning);
            break;
        case Telling::LogLine:
            EXPECT_TRUE(boxes.empty()) << boxes[0].text;
            EXPECT_TRUE(std::any_of(texts.begin(), texts.end(), [&](const std::string& text) {
                return Holds(text, fault.words);
            })) << run.LogText();
            break;
        case Telling::Silent:
        case Telling::Asked:
            EXPECT_TRUE(boxes.empty()) << boxes[0].text;
            break;
        case Telling::Whatever:
            ASSERT_EQ(boxes.size(), outcome == Outcome::Completed ? 0U : 1U);
            if (boxes.empty()) break;
            EXPECT_TRUE(IsKnown(boxes[0].text)) << boxes[0].text;
            EXPECT_TRUE(Holds(boxes[0].text, fault.words) || IsOfRule(boxes[0].text) || IsOfAnException(boxes[0].text))
                << boxes[0].text;
            break;
    }
}

void ExpectEnded(const ShortRun& run, Outcome outcome, const Fault& fault, const Reference& reference) {
    EXPECT_FALSE(run.startButton.IsRunning());
    EXPECT_EQ(run.boxes.questions, std::vector<std::string>());
    if (fault.telling == Telling::Box) {
        EXPECT_EQ(outcome, fault.phase == Phase::Initialisation ? Outcome::InitializationFailed : Outcome::Aborted);
        EXPECT_EQ(CountSince(run.calls, run.calls.FirstFiredAt(), "TolmSubmitBatch("), 0);
    } else if (fault.telling != Telling::Whatever) {
        EXPECT_EQ(outcome, fault.telling == Telling::Asked ? Outcome::Aborted : Outcome::Completed);
    }
    EXPECT_EQ(run.submittedAfterFailure, 0);
    const int submitted = run.calls.CountOf("TolmSubmitBatch");
    EXPECT_LE(submitted, reference.acquisitions);
    EXPECT_TRUE(outcome != Outcome::Completed || !fault.keepsFiles || submitted == reference.acquisitions) << submitted;
    // The longest acquisition of the fixture is expected to take less than a minute.
    constexpr int mostPolls = 1 + 600 + 1200;
    int polls = 0;
    for (const auto& text : run.calls.texts) {
        if (text.starts_with("TolmSubmitBatch(")) polls = 0;
        if (text.starts_with("HostSleep(")) ++polls;
        ASSERT_LE(polls, mostPolls);
    }
}

}  // namespace

Reference::Reference(std::int32_t modelCode) {
    ShortRun run({.modelCode = modelCode});
    std::map<std::string, std::vector<std::size_t>> groups;
    std::map<std::string, int> counts;
    run.calls.beforeCall = [&](const std::string& text) {
        const auto& lines = run.display.log;
        const auto isFinal = [](const std::string& line) { return line.find("--> Generating final") != line.npos; };
        CallPoint point;
        point.operation = text.substr(0, text.find('('));
        point.call = ++counts[point.operation];
        point.phase = run.display.calls.empty()                          ? Phase::Check
                      : lines.empty()                                    ? Phase::Initialisation
                      : std::any_of(lines.begin(), lines.end(), isFinal) ? Phase::FinalMethods
                                                                         : Phase::Run;
        groups[point.operation].push_back(points.size());
        const auto heading = std::find_if(lines.rbegin(), lines.rend(),
                                          [](const std::string& line) { return line.find("--> ") != line.npos; });
        groups[heading == lines.rend() ? std::to_string(static_cast<int>(point.phase)) : *heading].push_back(
            points.size());
        points.push_back(point);
    };
    EXPECT_EQ(run.Start(), Outcome::Completed);
    EXPECT_EQ(run.boxes.shown, std::vector<RecordedMessageBoxes::Box>());
    run.calls.beforeCall = nullptr;
    for (const auto& [name, group] : groups)
        for (const std::size_t at : {std::size_t{0}, group.size() / 2, group.size() - 1})
            points[group[at]].isSample = true;
    for (const auto& point : points) {
        if (run.calls.AnswersAValue(point.operation)) valued.insert(point.operation);
        if (run.calls.AnswersAHandle(point.operation)) handles.insert(point.operation);
    }
    files = ProjectFiles(run);
    log = TextsOf(run, run.display.log);
    looks = run.display.pumps;

    // What makes it a fixture worth sweeping.
    const auto& found = run.run.results->TopPeaksInfo;
    EXPECT_EQ(found.size(), 2U);
    EXPECT_EQ(run.run.scans->Scan5_MS3_GetFilePathsCount(), 2);
    for (const auto& record : found)
        EXPECT_TRUE(record->CEWasOptimized && record->AF2WasOptimized);
    EXPECT_GT(run.run.results->OptimalMS3PeakIndex, 0);
    acquisitions = run.calls.CountOf("TolmSubmitBatch");
    EXPECT_EQ(acquisitions, run.run.EPAndCEPSupported ? 9 : 6);
    EXPECT_LE(run.calls.CountOf("HostSleep"), 20 * acquisitions);
    constexpr std::size_t filesOfEach = 3;  // method, batch, data
    EXPECT_EQ(run.finished.size(), filesOfEach * static_cast<std::size_t>(acquisitions));
}

Fault FaultAt(const CallPoint& point, const std::string& cause, HostCalls::Times times, bool hostIsGone) {
    const bool isLogoffGone = point.operation == "TolmLogoff" && times != HostCalls::Times::Once;
    Fault fault{.operation = point.operation, .phase = point.phase, .cannotLogOff = hostIsGone || isLogoffGone};
    for (const auto& exception : exceptions) {
        if (exception.phase != point.phase || !StartsWith(point.operation, exception.operation) ||
            point.call <= exception.callsBefore)
            continue;
        fault.telling = exception.telling;
        // What is not told the first time may be told another time.
        if (fault.telling == Telling::Silent && times != HostCalls::Times::Once) fault.telling = Telling::Whatever;
        // The status that was missed may be the one by which a wait would have ended.
        fault.keepsFiles = fault.telling != Telling::Whatever;
        if (*exception.message != '\0') {
            fault.words = {exception.message};
            return fault;
        }
        if (fault.telling == Telling::Whatever || fault.telling == Telling::Silent) return fault;
        break;
    }
    if (fault.words.empty() && fault.telling == Telling::Whatever) fault.telling = Telling::Box;
    for (const auto& beginning : beginnings) {
        if (!StartsWith(point.operation, beginning.operation)) continue;
        fault.words = {beginning.message, cause};
        return fault;
    }
    ADD_FAILURE() << "nothing is known of " << point.operation;
    return fault;
}

void GuardAgainstHanging(ShortRun& run, const std::string& what) {
    run.calls.beforeCall = [&run, what](const std::string& text) {
        constexpr std::size_t farTooMany = 200'000;
        if (run.calls.texts.size() < farTooMany) return;
        std::cerr << what << ": no end, at " << text << std::endl;
        std::abort();
    };
}

void ExpectPromises(ShortRun& run, Outcome outcome, const Fault& fault, const Reference& reference) {
    ExpectEnded(run, outcome, fault, reference);
    ExpectLoggedOff(run, fault);
    ExpectTold(run, outcome, fault);
    if (outcome == Outcome::Completed || outcome == Outcome::Aborted) {
        ExpectLogAndReport(run, outcome);
        ExpectLogOf(reference, run, fault);
    } else {
        EXPECT_TRUE(outcome == Outcome::InitializationFailed || outcome == Outcome::InstrumentRefused ||
                    outcome == Outcome::SettingsInvalid);
        EXPECT_EQ(run.run.results, nullptr);
        EXPECT_EQ(run.calls.CountOf("TolmSubmitBatch"), 0);
        EXPECT_TRUE(support::SubFolders(run.DataFolder()).empty()) << "an output folder of a run that did not start";
    }
    ExpectFiles(run, fault, reference);
}

void ExpectNextRun(ShortRun& run, const Reference& reference) {
    SCOPED_TRACE("the next run");
    run.calls.Mend();
    run.calls.Forget();
    run.ForgetWhatWasSeen();
    run.boxes.shown.clear();
    run.display.log.clear();
    run.onPump = nullptr;
    run.msPerLook = ShortRun::usualMsPerLook;
    run.clock.Sleep(2000);  // a run of the same second would share its folder
    const Outcome outcome = run.Start();
    EXPECT_EQ(outcome, Outcome::Completed);
    ExpectPromises(run, outcome, {.telling = Telling::Silent, .keepsFiles = false}, reference);
}

std::string OutcomeText(Outcome outcome) {
    constexpr const char* names[] = {"AbortAsked", "SettingsInvalid", "InstrumentRefused", "InitializationFailed",
                                     "Aborted",    "Completed",       "TornDown"};
    return names[static_cast<int>(outcome)];
}
