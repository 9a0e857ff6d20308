// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Cp1252.h"

#include <algorithm>
#include <array>

namespace {

// The characters of the bytes 0x80 to 0x9F. All others have the character of their own number.
constexpr std::array<char16_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr unsigned kFirstHighControl = 0x80;

char16_t Decode(char byte) {
    const auto code = static_cast<unsigned char>(byte);
    const unsigned index = code - kFirstHighControl;
    return index < kHighControls.size() ? kHighControls[index] : char16_t{code};
}

char Encode(char16_t unit) {
    const unsigned index = unit - kFirstHighControl;
    if (unit <= 0xFF && index >= kHighControls.size())
        return static_cast<char>(unit);
    const auto found = std::find(kHighControls.begin(), kHighControls.end(), unit);
    if (found == kHighControls.end())
        return '?';
    return static_cast<char>(kFirstHighControl +
                             static_cast<unsigned>(found - kHighControls.begin()));
}

}  // namespace

QString FromCp1252(QByteArrayView bytes) {
    QString text(bytes.size(), Qt::Uninitialized);
    std::transform(bytes.begin(), bytes.end(), text.begin(), Decode);
    return text;
}

QByteArray ToCp1252(QStringView text) {
    QByteArray bytes;
    AppendCp1252(bytes, text);
    return bytes;
}

void AppendCp1252(QByteArray& bytes, QStringView text) {
    const qsizetype before = bytes.size();
    bytes.resize(before + text.size());
    std::transform(text.begin(), text.end(), bytes.begin() + before,
                   [](QChar c) { return Encode(c.unicode()); });
}
