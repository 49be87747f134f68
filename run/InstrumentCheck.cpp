#include "run/InstrumentCheck.h"

#include <exception>

#include "host/InstrumentModels.h"

namespace veltra {

bool CheckInstrument(RunState& runState) {
    bool isLinearIonTrap = true;
    try {
        const auto helper = runState.host.CreateInstrumentHelper();
        const std::int32_t modelCode = helper->GetInstrumentModelCode();
        isLinearIonTrap = helper->IsLinearIonTrap(modelCode);
        runState.InstrumentModelCode = modelCode;
    } catch (const std::exception&) {
        runState.InstrumentModelCode = 0;
    }
    runState.EPAndCEPSupported = SupportsEPAndCEP(runState.InstrumentModelCode);
    if (!isLinearIonTrap)
        runState.messageBoxes.Show("This script only works on Linear Ion Trap instruments",
                                   ports::MessageIcon::Critical);
    return isLinearIonTrap;
}

}  // namespace veltra
