// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/NumberText.h"

#include "base/EnglishAtof.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace {

constexpr int kMaxDecimals = 4;
constexpr int kPointDigits = 13;

// Digits of a number's text between its first and its last one that is not 0.
qsizetype SignificantDigits(QStringView number) {
    QString digits;
    for (const QChar c : number) {
        if (c == u'e' || c == u'E')
            break;
        if (c.isDigit() && (c != u'0' || !digits.isEmpty()))
            digits.append(c);
    }
    while (digits.endsWith(u'0'))
        digits.chop(1);
    return digits.size();
}

QString Print(double value, std::chars_format format, int precision) {
    if (std::isnan(value))
        return QStringLiteral("nan");
    // Sign, the digits of the largest number, point and decimals.
    std::array<char, std::numeric_limits<double>::max_exponent10 + 32> buffer;
    const auto [end, error] =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format, precision);
    return error == std::errc() ? QString::fromLatin1(buffer.data(), end - buffer.data())
                                : QString();
}

// `value` without its fraction. The result 0 has no sign.
float WholePart(float value) {
    return std::trunc(value) + 0.0F;
}

}  // namespace

QString FormatValue(float value, int decimals) {
    if (decimals < 0 || decimals > kMaxDecimals)
        return {};
    const float shown = decimals == 0 ? WholePart(value) : value;
    return Print(double{shown}, std::chars_format::fixed, decimals);
}

float RoundWhole(float value) {
    const float whole = WholePart(value);
    return value - whole >= 0.5F ? whole + 1.0F : whole;
}

float Round2(float value) {
    return RoundWhole(value * 100.0F) / 100.0F;
}

QString NumberText13(double value) {
    return Print(value, std::chars_format::general, kPointDigits);
}

QString NumberText7(double value) {
    return Print(value, std::chars_format::general, 7);
}

QString RewrittenNumber(const QString& text) {
    if (!IsNumber(text))
        return text;
    const qsizetype digits = SignificantDigits(text);
    const double value = ParseNumber(text);
    const bool keeps_all = digits == 0 || (digits <= kPointDigits && std::isnormal(value));
    return keeps_all ? NumberText13(value) : text;
}
