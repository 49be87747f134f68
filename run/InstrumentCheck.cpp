#include "run/InstrumentCheck.h"

#include <exception>

#include "host/InstrumentModels.h"

namespace veltra {

bool CheckInstrument(RunState& runState) {
    bool isLinearIonTrap = true;
    runState.InstrumentModelCode = 0;
    try {
        const auto helper = runState.host.CreateInstrumentHelper();
        runState.InstrumentModelCode = helper->GetInstrumentModelCode();
        isLinearIonTrap = helper->IsLinearIonTrap(runState.InstrumentModelCode);
    } catch (const std::exception&) {
        // A host that is not there is told when a run is started.
    }
    runState.EPAndCEPSupported = SupportsEPAndCEP(runState.InstrumentModelCode);
    if (isLinearIonTrap) return true;
    runState.InstrumentModelCode = 0;  // so that a later start of a run asks again, and refuses again
    runState.messageBoxes.Show("This script only works on Linear Ion Trap instruments", ports::MessageIcon::Critical);
    return false;
}

}  // namespace veltra
