#include "app/InputAPI.h"

#include "app/DialogRun.h"

#include <utility>

int InputAPI::Init() {
    try {
        MakeApplication();
    } catch (...) {
        // Without an application object no dialog is shown later.
    }
    return 1;
}

int InputAPI::Prompt(int profileKind, int displayMode, QString text) {
    try {
        Init();
        if (!CanShowDialog())
            return kNoDialog;
        SessionSetup setup;
        setup.kind = static_cast<ProfileKind>(profileKind);
        setup.mode = static_cast<DisplayMode>(displayMode);
        setup.text = std::move(text);
        setup.name = m_pName;
        setup.times = m_pTimeList;
        setup.values = m_pValueList;
        setup.names = m_pExtraList;
        return RunDialog(std::move(setup));
    } catch (...) {
        return kNoDialog;
    }
}
