// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/NumberField.h"

#include "base/EnglishAtof.h"
#include "base/NumberText.h"
#include "profiles/EntryRules.h"

std::optional<double> NumberField::number() const {
    const std::optional<QString> entry = NumberEntry(text());
    return entry ? std::optional(ParseNumber(*entry)) : std::nullopt;
}

void NumberField::SetNumber(double number) {
    setText(NumberText13(number));
}
