// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>

namespace orvanel::errorNumber {

/// The numbers that this part of the host reports its errors by (docs/formats.md lists them for users).
inline constexpr std::int32_t hostNotRunning = 1001;
inline constexpr std::int32_t badPause = 1002;
inline constexpr std::int32_t badConfiguration = 1010;
inline constexpr std::int32_t filesInUse = 1011;
inline constexpr std::int32_t badProject = 1020;
inline constexpr std::int32_t methodFileUnreadable = 1101;
inline constexpr std::int32_t methodFileDamaged = 1102;
inline constexpr std::int32_t methodNotSaved = 1103;
inline constexpr std::int32_t noSuchPart = 1110;
inline constexpr std::int32_t impossibleValue = 1120;
inline constexpr std::int32_t notAcquirable = 1121;
inline constexpr std::int32_t unsavedChanges = 1122;
inline constexpr std::int32_t notInitialized = 1201;
inline constexpr std::int32_t noSession = 1202;
inline constexpr std::int32_t logonRefused = 1203;
inline constexpr std::int32_t projectNotFound = 1204;
inline constexpr std::int32_t badBatch = 1205;
inline constexpr std::int32_t methodNotFound = 1206;
inline constexpr std::int32_t badDataFile = 1207;
inline constexpr std::int32_t batchFileDamaged = 1208;
inline constexpr std::int32_t batchNotSaved = 1209;
inline constexpr std::int32_t wrongQueueOrder = 1301;
inline constexpr std::int32_t acquisitionFailed = 1302;
inline constexpr std::int32_t unknownModel = 1501;
inline constexpr std::int32_t unknownScanRate = 1502;

}  // namespace orvanel::errorNumber
