// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/ProfileFile.h"

#include "base/Cp1252.h"
#include "base/EnglishAtof.h"
#include "base/FileReplace.h"
#include "base/Message.h"
#include "base/NumberText.h"
#include "base/Words.h"
#include "profiles/ProfileFolders.h"

#include <QDir>
#include <QList>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

// Millions of points. More would only fill the memory.
constexpr qint64 kLargestFile = 64 * 1024 * 1024;

constexpr qsizetype kAnyCount = std::numeric_limits<qsizetype>::max();

// Labels, values, names.
using Lines = std::array<QByteArrayView, 3>;

// Removes the first line from `rest` and returns it without its line feed. A CR before that stays;
// it counts as a blank.
QByteArrayView TakeLine(QByteArrayView& rest) {
    const qsizetype end = rest.indexOf('\n');
    const QByteArrayView line = end < 0 ? rest : rest.first(end);
    rest = rest.sliced(end < 0 ? rest.size() : end + 1);
    return line;
}

Lines SplitLines(QByteArrayView bytes) {
    Lines lines;
    for (QByteArrayView& line : lines)
        line = TakeLine(bytes);
    return lines;
}

bool HeaderMatches(ProfileKind kind, const Lines& lines) {
    const auto& keywords = Describe(kind).read_keywords;
    for (size_t i = 0; i < keywords.size(); ++i) {
        QByteArrayView line = lines[i];
        if (keywords[i].isEmpty() || FromCp1252(TakeWord(line)) != keywords[i])
            return false;
    }
    return true;
}

// What stands behind the first "=" of `line`.
std::optional<QByteArrayView> AfterEquals(QByteArrayView line) {
    const qsizetype equals = line.indexOf('=');
    if (equals < 0)
        return std::nullopt;
    return line.sliced(equals + 1);
}

// A number in a file stands in single precision.
bool IsFileNumber(QStringView text) {
    return IsNumber(text) && std::isfinite(EnglishAtof(text));
}

// The numbers behind the "=" of `line`: none, or up to `most`. Nothing when one of them cannot be
// read or does not fit a float.
std::optional<QList<float>> ReadNumbers(QByteArrayView line, qsizetype most) {
    std::optional<QByteArrayView> rest = AfterEquals(line);
    if (!rest)
        return std::nullopt;
    QList<float> numbers;
    for (QByteArrayView word = TakeWord(*rest); !word.isEmpty(); word = TakeWord(*rest)) {
        const QString text = FromCp1252(word);
        const QStringView number = QStringView(text).trimmed();
        if (numbers.size() == most || !IsFileNumber(number))
            return std::nullopt;
        numbers.append(EnglishAtof(number));
    }
    return numbers;
}

// The texts between double quotes behind the "=" of `line`: none, or up to `most`. What stands
// before a text's opening quote does not matter.
std::optional<QStringList> ReadNames(QByteArrayView line, qsizetype most) {
    const std::optional<QByteArrayView> all = AfterEquals(line);
    if (!all)
        return std::nullopt;
    QStringList names;
    QByteArrayView rest = *all;
    while (!rest.trimmed().isEmpty()) {
        const qsizetype open = rest.indexOf('"');
        const qsizetype close = open < 0 ? -1 : rest.indexOf('"', open + 1);
        if (close < 0 || names.size() == most)
            return std::nullopt;
        names.append(FromCp1252(rest.sliced(open + 1, close - open - 1)));
        rest = rest.sliced(close + 1);
    }
    return names;
}

QStringList Texts(const QList<float>& numbers, int decimals) {
    QStringList texts;
    texts.reserve(numbers.size());
    for (const float number : numbers)
        texts.append(FormatValue(decimals == 0 ? RoundWhole(number) : number, decimals));
    return texts;
}

// A line may also hold nothing at all.
bool CountIsRight(qsizetype count, qsizetype expected) {
    return count == 0 || count == expected;
}

std::optional<ProfileContent> ReadContent(ProfileKind kind, const Lines& lines) {
    const KindDescriptor& facts = Describe(kind);
    const qsizetype rows = facts.rows > 0 ? facts.rows : kAnyCount;
    ProfileContent content;
    const auto values = ReadNumbers(lines[1], rows);
    if (!values)
        return std::nullopt;
    if (facts.labels == RowLabels::None) {
        const auto times = ReadNumbers(lines[0], values->size());
        if (!times || times->size() != values->size())
            return std::nullopt;
        content.labels = Texts(*times, facts.decimals);
    } else if (!CountIsRight(values->size(), rows)) {
        return std::nullopt;
    }
    content.values = Texts(*values, facts.decimals);
    for (const float value : *values)
        content.sum += value;
    if (facts.hasNames()) {
        const auto names = ReadNames(lines[2], rows);
        if (!names || !CountIsRight(names->size(), rows))
            return std::nullopt;
        content.names = *names;
    }
    return content;
}

ProfileReading Failure(ProfileFileStatus status) {
    ProfileReading reading;
    reading.status = status;
    return reading;
}

QString LastComponent(const QString& path) {
    const QString plain = QDir::fromNativeSeparators(path);
    return plain.sliced(plain.lastIndexOf(u'/') + 1);
}

void AppendLine(QByteArray& bytes, QStringView keyword, const QStringList& items,
                QByteArrayView quote, QByteArrayView line_end) {
    bytes.append(ToCp1252(keyword)).append(" =");
    for (const QString& item : items)
        bytes.append(' ').append(quote).append(ToCp1252(item)).append(quote);
    bytes.append(line_end);
}

}  // namespace

ProfileReading ParseProfile(ProfileKind kind, QByteArrayView bytes) {
    const Lines lines = SplitLines(bytes);
    if (!HeaderMatches(kind, lines))
        return Failure(ProfileFileStatus::WrongHeader);
    const std::optional<ProfileContent> content = ReadContent(kind, lines);
    if (!content)
        return Failure(ProfileFileStatus::WrongLine);
    ProfileReading reading;
    reading.content = *content;
    if (lines[0].endsWith('\r'))
        reading.line_end = "\r\n";
    return reading;
}

ProfileReading ReadProfile(ProfileKind kind, const QString& path) {
    const std::optional<QByteArray> bytes = ReadRegularFile(AbsolutePath(path), kLargestFile + 1);
    if (!bytes) {
        ShowMessage(u"Le fichier \""_s + path + u"\"n'a pas pu être ouvert!"_s);
        return Failure(ProfileFileStatus::CannotOpen);
    }
    const ProfileReading reading = bytes->size() <= kLargestFile
                                       ? ParseProfile(kind, *bytes)
                                       : Failure(ProfileFileStatus::WrongHeader);
    if (reading.status != ProfileFileStatus::Read)
        ShowMessage(u"Le fichier \""_s + path + u"\" n'est pas valable ici !"_s);
    return reading;
}

bool CanBeReadBack(ProfileKind kind, const ProfileContent& content) {
    const auto are_numbers = [](const QStringList& texts) {
        return std::all_of(texts.cbegin(), texts.cend(), [](const QString& text) {
            return IsFileNumber(text) && text == text.trimmed();
        });
    };
    // Between quotes a lone CR is a character like any other.
    const auto is_readable_name = [](QString name) { return IsStorableName(name.remove(u'\r')); };
    const bool has_times = Describe(kind).labels == RowLabels::None;
    return are_numbers(content.values) && (!has_times || are_numbers(content.labels)) &&
           std::all_of(content.names.cbegin(), content.names.cend(), is_readable_name);
}

QByteArray WriteProfile(ProfileKind kind, const ProfileContent& content, QByteArrayView line_end) {
    const KindDescriptor& facts = Describe(kind);
    if (!facts.hasFiles())
        return {};
    if (line_end.isEmpty())
        line_end = kPlatformLineEnd;
    QByteArray bytes;
    AppendLine(bytes, facts.write_keywords[0], content.labels, {}, line_end);
    AppendLine(bytes, facts.write_keywords[1], content.values, {}, line_end);
    if (facts.hasNames())
        AppendLine(bytes, facts.write_keywords[2], content.names, "\"", line_end);
    return bytes;
}

QString WithExtension(const QString& chosen) {
    return LastComponent(chosen).contains(u'.') ? chosen : chosen + u".dat"_s;
}

QString FileTitle(const QString& path) {
    const QString name = LastComponent(path);
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot < 0 ? name : name.first(dot);
}

QString NameAfterSave(ProfileKind kind, const QString& path, const QString& old_name,
                      bool in_default_folder) {
    const KindDescriptor& facts = Describe(kind);
    const QString title = FileTitle(path);
    if (!facts.save_renames || title.isEmpty())
        return old_name;
    return facts.coefficients && !in_default_folder ? u"BAD_PATH"_s : title;
}
