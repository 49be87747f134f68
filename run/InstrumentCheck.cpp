// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "run/InstrumentCheck.h"

#include "host/HostWrapper.h"
#include "host/InstrumentModels.h"

namespace veltra {

bool CheckInstrument(RunState& runState) {
    bool isLinearIonTrap = true;
    runState.InstrumentModelCode = 0;
    // A model that was not checked is no known one.
    IgnoreFailure("a host that is not there is told when a run is started", [&] {
        const auto helper = runState.host.CreateInstrumentHelper();
        const std::int32_t modelCode = Required(helper).GetInstrumentModelCode();
        isLinearIonTrap = helper->IsLinearIonTrap(modelCode);
        runState.InstrumentModelCode = modelCode;
    });
    runState.EPAndCEPSupported = SupportsEPAndCEP(runState.InstrumentModelCode);
    if (isLinearIonTrap) return true;
    runState.InstrumentModelCode = 0;  // so that a later start of a run asks again, and refuses again
    runState.messageBoxes.Show("This script only works on Linear Ion Trap instruments", ports::MessageIcon::Critical);
    return false;
}

}  // namespace veltra
