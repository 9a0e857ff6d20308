// SPDX-License-Identifier: GPL-3.0-or-later
#include "InputAPI.h"

#include "app/DialogRun.h"

#include <utility>

namespace {

template <typename Value>
Value ValueOf(const Value* from) {
    return from != nullptr ? *from : Value();
}

template <typename Value>
void Store(const Value& value, Value* to) {
    if (to != nullptr)
        *to = value;
}

}  // namespace

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
        setup.name = ValueOf(m_pName);
        setup.times = ValueOf(m_pTimeList);
        setup.values = ValueOf(m_pValueList);
        setup.names = ValueOf(m_pExtraList);
        const DialogOutcome outcome = RunDialog(std::move(setup));
        Store(outcome.name, m_pName);
        if (outcome.last_read) {
            Store(outcome.last_read->labels, m_pTimeList);
            Store(outcome.last_read->values, m_pValueList);
            Store(outcome.last_read->names, m_pExtraList);
        }
        return outcome.result;
    } catch (...) {
        return kNoDialog;
    }
}
