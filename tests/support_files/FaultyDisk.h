// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/Disk.h"

/// What a disk can be asked.
enum class DiskCall {
    Status,
    List,
    RealPath,
    Open,
    Create,
    Size,
    Read,
    Write,
    CutTo,
    Flush,
    Close,
    Rename,
    FlushFolder,
    Remove,
    MakeFolder
};

enum class DiskFault {
    InputOutput,  ///< "Input/output error", and nothing was done
    NoSpace,      ///< "No space left on device"; of what is to be written half arrives
    ShortWrite,   ///< half is written and the caller told so, as a system may do at any time
    LostTail,     ///< half is written and the caller told that it was all
    Death,        ///< the process ends without a word, in the middle of a write or before anything else
};

inline const char* Name(DiskCall call) {
    constexpr const char* names[] = {"status", "list",   "real path",    "open",   "create",
                                     "size",   "read",   "write",        "cut",    "flush",
                                     "close",  "rename", "flush folder", "remove", "make folder"};
    return names[static_cast<int>(call)];
}

inline const char* Name(DiskFault fault) {
    constexpr const char* names[] = {"input/output error", "no space", "short write", "lost tail", "death"};
    return names[static_cast<int>(fault)];
}

struct DiskOperation {
    DiskCall call;
    std::string path;
};

/// Whether the fault can happen to the operation.
inline bool CanHappen(DiskFault fault, DiskCall call) {
    switch (fault) {
        case DiskFault::InputOutput:
        case DiskFault::Death:
            return true;
        case DiskFault::NoSpace:
            return call == DiskCall::Create || call == DiskCall::Write || call == DiskCall::Flush ||
                   call == DiskCall::Close || call == DiskCall::MakeFolder;
        case DiskFault::ShortWrite:
        case DiskFault::LostTail:
            return call == DiskCall::Write;
    }
    return false;
}

/// The system's disk, which keeps what it was asked and fails when it is told to.
class FaultyDisk : public support::Disk {
  public:
    enum class Times { Once, FromThenOn };
    static constexpr int deathStatus = 77;  ///< what a process ends with that dies of a fault

    /// @param operation which one fails, from 1; every later one that can when it is to fail from then on
    void Fail(DiskFault fault, std::size_t operation, Times times) {
        state_->fault = fault;
        state_->failing = operation;
        state_->times = times;
    }
    const std::vector<DiskOperation>& Operations() const { return state_->operations; }
    /// Whether the fault has happened.
    bool HasFired() const { return state_->hasFired; }
    /// Those that have failed, also because the system's disk did.
    const std::vector<DiskOperation>& Failed() const { return state_->failed; }

    support::PathStatus Status(const std::string& path) const override {
        return Ask(DiskCall::Status, path, [&] { return support::SystemDisk().Status(path); });
    }
    std::vector<support::FolderEntry> List(const std::string& path) const override {
        return Ask(DiskCall::List, path, [&] { return support::SystemDisk().List(path); });
    }
    std::string RealPath(const std::string& path) const override {
        return Ask(DiskCall::RealPath, path, [&] { return support::SystemDisk().RealPath(path); });
    }
    std::unique_ptr<support::OpenFile> Open(const std::string& path, OpenFor purpose) const override {
        std::unique_ptr<support::OpenFile> file;
        state_->Perform({DiskCall::Open, path}, [&] { file = support::SystemDisk().Open(path, purpose); });
        return std::make_unique<File>(std::move(file), path, *state_);
    }
    std::unique_ptr<support::OpenFile> Create(const std::string& path) const override {
        std::unique_ptr<support::OpenFile> file;
        state_->Perform({DiskCall::Create, path}, [&] { file = support::SystemDisk().Create(path); });
        return file ? std::make_unique<File>(std::move(file), path, *state_) : nullptr;
    }
    void Rename(const std::string& from, const std::string& to) const override {
        state_->Perform({DiskCall::Rename, to}, [&] { support::SystemDisk().Rename(from, to); });
    }
    void FlushFolder(const std::string& path) const override {
        state_->Perform({DiskCall::FlushFolder, path}, [&] { support::SystemDisk().FlushFolder(path); });
    }
    void Remove(const std::string& path) const override {
        state_->Perform({DiskCall::Remove, path}, [&] { support::SystemDisk().Remove(path); });
    }
    void MakeFolder(const std::string& path) const override {
        state_->Perform({DiskCall::MakeFolder, path}, [&] { support::SystemDisk().MakeFolder(path); });
    }

  private:
    struct State {
        std::vector<DiskOperation> operations;
        std::vector<DiskOperation> failed;
        bool hasFired = false;
        DiskFault fault = DiskFault::InputOutput;
        std::size_t failing = 0;
        Times times = Times::Once;

        /// Counts the operation. @return whether it is to fail
        bool IsDue(const DiskOperation& operation) {
            operations.push_back(operation);
            const bool isReached = times == Times::Once ? operations.size() == failing : operations.size() >= failing;
            if (failing == 0 || !isReached || !CanHappen(fault, operation.call)) return false;
            failed.push_back(operation);
            hasFired = true;
            return true;
        }
        [[noreturn]] void Raise() const {
            if (fault == DiskFault::Death) std::_Exit(deathStatus);
            throw support::DiskError(fault == DiskFault::NoSpace ? "No space left on device" : "Input/output error");
        }
        template <class Action>
        void Perform(const DiskOperation& operation, Action action) {
            if (IsDue(operation)) Raise();
            Do(operation, action);
        }
        template <class Action>
        void Do(const DiskOperation& operation, Action action) {
            try {
                action();
            } catch (const support::DiskError&) {
                failed.push_back(operation);
                throw;
            }
        }
    };

    class File : public support::OpenFile {
      public:
        File(std::unique_ptr<support::OpenFile> file, std::string path, State& state)
            : file_(std::move(file)), path_(std::move(path)), state_(state) {}

        std::uint64_t Size() override {
            std::uint64_t size = 0;
            state_.Perform({DiskCall::Size, path_}, [&] { size = file_->Size(); });
            return size;
        }
        std::string Read(std::uint64_t offset, std::size_t count) override {
            std::string content;
            state_.Perform({DiskCall::Read, path_}, [&] { content = file_->Read(offset, count); });
            return content;
        }
        std::size_t Write(std::string_view content) override {
            std::size_t written = 0;
            const DiskOperation operation{DiskCall::Write, path_};
            if (!state_.IsDue(operation)) {
                state_.Do(operation, [&] { written = file_->Write(content); });
                return written;
            }
            if (state_.fault == DiskFault::InputOutput) state_.Raise();
            const std::string_view half = content.substr(
                0, state_.fault == DiskFault::ShortWrite ? (content.size() + 1) / 2 : content.size() / 2);
            file_->Write(half);
            if (state_.fault == DiskFault::ShortWrite) return half.size();
            if (state_.fault == DiskFault::LostTail) return content.size();
            state_.Raise();
        }
        void CutTo(std::uint64_t size) override {
            state_.Perform({DiskCall::CutTo, path_}, [&] { file_->CutTo(size); });
        }
        void Flush() override {
            state_.Perform({DiskCall::Flush, path_}, [&] { file_->Flush(); });
        }
        void Close() override {
            state_.Perform({DiskCall::Close, path_}, [&] { file_->Close(); });
        }

      private:
        std::unique_ptr<support::OpenFile> file_;
        std::string path_;
        State& state_;
    };

    template <class Question>
    std::invoke_result_t<Question> Ask(DiskCall call, const std::string& path, Question question) const {
        std::invoke_result_t<Question> answer{};
        state_->Perform({call, path}, [&] { answer = question(); });
        return answer;
    }

    // The disk itself is handed around as constant.
    std::unique_ptr<State> state_ = std::make_unique<State>();
};
