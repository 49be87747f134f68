// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <utility>

#include "orvanel/queue/QueueEngine.h"
#include "ports/QueueServer.h"

namespace orvanel {

/// The queue as clients see it.
class QueueServerHandle : public ports::QueueServer {
  public:
    /// @param queue keeps the host's state alive with it
    explicit QueueServerHandle(std::shared_ptr<QueueEngine> queue) : queue_(std::move(queue)) {}

    void HostQueuePrepare() override { queue_->Prepare(); }
    void HostQueueReset() override { queue_->Reset(); }
    void HostQueueEnable() override { queue_->Enable(); }
    void HostQueueRun() override { queue_->Run(); }

  private:
    std::shared_ptr<QueueEngine> queue_;
};

}  // namespace orvanel
