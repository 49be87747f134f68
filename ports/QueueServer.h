// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace ports {

/// The host's acquisition queue. The status of its current sample is published as a registry value, not here.
/// The caller owns the handle; releasing it leaves the queue as it is. Every operation throws HostError on failure.
class QueueServer {
  public:
    virtual ~QueueServer() = default;

    virtual void HostQueuePrepare() = 0;
    /// Stops the sample under way and drops what is still waiting.
    virtual void HostQueueReset() = 0;
    virtual void HostQueueEnable() = 0;
    virtual void HostQueueRun() = 0;
};

}  // namespace ports
