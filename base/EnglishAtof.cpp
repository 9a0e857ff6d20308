// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/EnglishAtof.h"

#include <QVarLengthArray>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

// No number is longer than this many characters, whatever a file holds.
constexpr qsizetype kLongestNumber = 100'000;

struct Parsed {
    double value = 0.0;
    qsizetype end = 0;  // index behind the number; 0 when there is none
};

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool MayStandInNumber(QChar c) {
    const char16_t code = c.unicode();
    if (code >= 0x80)
        return false;
    const char letter = static_cast<char>(code);
    return IsDigit(letter) || IsBlank(letter) || letter == '.' || letter == '-' || letter == '+' ||
           letter == 'e' || letter == 'E';
}

// True when a number that std::from_chars calls out of range is too large, false when it is too
// small. The decimal exponent of its first significant digit decides.
bool IsTooLarge(const char* begin, const char* end) {
    long long exponent = 0;
    long long digits_before = 0;
    long long zeros_after = 0;
    bool seen_point = false;
    bool seen_digit = false;
    for (const char* p = begin; p != end; ++p) {
        if (*p == '.') {
            seen_point = true;
        } else if (*p == 'e' || *p == 'E') {
            const char* from = p + 1;
            const bool negative = from != end && *from == '-';
            if (from != end && (*from == '+' || *from == '-'))
                ++from;
            constexpr long long kLimit = std::numeric_limits<long long>::max() / 4;
            if (std::from_chars(from, end, exponent).ec != std::errc() || exponent > kLimit)
                exponent = kLimit;
            if (negative)
                exponent = -exponent;
            break;
        } else if (IsDigit(*p)) {
            seen_digit = seen_digit || *p != '0';
            if (!seen_point && seen_digit)
                ++digits_before;
            if (seen_point && !seen_digit)
                ++zeros_after;
        }
    }
    return digits_before - zeros_after + exponent > 0;
}

Parsed Parse(QStringView text) {
    // Only this part of the text can belong to the number.
    QVarLengthArray<char, 64> latin;
    for (const QChar c : text.first(std::min(text.size(), kLongestNumber))) {
        if (!MayStandInNumber(c))
            break;
        latin.append(c.toLatin1());
    }
    const char* const begin = latin.constData();
    const char* const end = begin + latin.size();
    const char* p = begin;
    while (p != end && IsBlank(*p))
        ++p;
    const bool negative = p != end && *p == '-';
    if (p != end && (*p == '-' || *p == '+'))
        ++p;
    const bool starts_number =
        p != end && (IsDigit(*p) || (*p == '.' && p + 1 != end && IsDigit(p[1])));
    if (!starts_number)
        return {};
    Parsed result;
    const auto [stop, error] = std::from_chars(p, end, result.value);
    if (error == std::errc::result_out_of_range)
        result.value = IsTooLarge(p, stop) ? std::numeric_limits<double>::infinity() : 0.0;
    if (negative)
        result.value = -result.value;
    result.end = stop - begin;
    return result;
}

}  // namespace

double ParseNumber(QStringView text) {
    return Parse(text).value;
}

std::vector<double> ParseNumbers(const QStringList& texts) {
    std::vector<double> numbers(static_cast<size_t>(texts.size()));
    std::transform(texts.cbegin(), texts.cend(), numbers.begin(),
                   [](const QString& text) { return ParseNumber(text); });
    return numbers;
}

float EnglishAtof(QStringView text) {
    return static_cast<float>(ParseNumber(text));
}

bool IsNumber(QStringView text) {
    const Parsed parsed = Parse(text);
    return parsed.end > 0 && std::isfinite(parsed.value) &&
           std::all_of(text.begin() + parsed.end, text.end(),
                       [](QChar c) { return c.unicode() < 0x80 && IsBlank(c.toLatin1()); });
}
