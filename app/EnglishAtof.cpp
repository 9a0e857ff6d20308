#include "app/EnglishAtof.h"

#include <QByteArray>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

struct Parsed {
    double value = 0.0;
    qsizetype end = 0;  // index behind the number; 0 when there is none
};

bool IsBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// Whether a number that std::from_chars calls out of range is too large rather than too small: the
// decimal exponent of its first significant digit tells.
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

Parsed ParseLatin(const QByteArray& text) {
    const char* const begin = text.constData();
    const char* const end = begin + text.size();
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
    return ParseLatin(text.toLatin1()).value;
}

float EnglishAtof(QStringView text) {
    return static_cast<float>(ParseNumber(text));
}

bool IsNumber(QStringView text) {
    const QByteArray latin = text.toLatin1();
    const Parsed parsed = ParseLatin(latin);
    return parsed.end > 0 && std::isfinite(parsed.value) &&
           std::all_of(latin.cbegin() + parsed.end, latin.cend(), IsBlank);
}
