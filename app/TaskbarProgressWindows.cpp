// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <windows.h>
// after windows.h, which it needs
#include <shobjidl.h>

#include "app/TaskbarProgress.h"

namespace app {

void ShowOnTaskbar(std::uintptr_t window, int percent, bool isVisible) {
    // Qt has initialised COM on the thread of its windows.
    ITaskbarList3* taskbar = nullptr;
    if (FAILED(::CoCreateInstance(CLSID_TaskbarList, nullptr, CLSCTX_INPROC_SERVER, IID_ITaskbarList3,
                                  reinterpret_cast<void**>(&taskbar))))
        return;
    const auto handle = reinterpret_cast<HWND>(window);
    if (SUCCEEDED(taskbar->HrInit())) {
        constexpr int whole = 100;
        taskbar->SetProgressState(handle, isVisible ? TBPF_NORMAL : TBPF_NOPROGRESS);
        if (isVisible) taskbar->SetProgressValue(handle, static_cast<ULONGLONG>(percent), whole);
    }
    taskbar->Release();
}

}  // namespace app
