// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/ProfileFolders.h"

#include "base/Cp1252.h"
#include "base/FileReplace.h"
#include "profiles/ProfileFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

// One text for all spellings of a folder that is there, links followed.
QString Resolved(const QString& folder) {
    const QString canonical = QDir(folder).canonicalPath();
    return canonical.isEmpty() ? QDir::cleanPath(QDir(folder).absolutePath()) : canonical;
}

}  // namespace

ProfileFolders::ProfileFolders(const QString& program_folder)
    : m_program_folder(QDir(AbsolutePath(program_folder)).absolutePath()) {
}

QString ProfileFolders::ProgramFolder() {
    return QCoreApplication::applicationDirPath();
}

QString ProfileFolders::KindFolder(ProfileKind kind) const {
    const KindDescriptor& facts = Describe(kind);
    if (!facts.hasFiles())
        return {};
    const QDir data(QDir(m_program_folder).filePath(u"Data"_s));
    return QDir::toNativeSeparators(data.filePath(facts.folder.toString()));
}

QStringList ProfileFolders::DailyProfileList() const {
    const QStringList files =
        QDir(KindFolder(ProfileKind::Daily)).entryList(QDir::Files | QDir::Hidden);
    QStringList titles;
    for (const QString& file : files) {
        const QString title = FileTitle(file);
        const bool is_name = !title.isEmpty() && title != u"." && title != u"..";
        if (file.endsWith(u"dat") && is_name && IsChoosableName(title))
            titles.append(title);
    }
    std::sort(titles.begin(), titles.end(), [](const QString& left, const QString& right) {
        const int order = left.compare(right, Qt::CaseInsensitive);
        return order != 0 ? order < 0 : left < right;
    });
    titles.removeDuplicates();
    return titles;
}

QString ProfileFolders::DailyProfilePath(const QString& name) const {
    return KindFolder(ProfileKind::Daily) + QDir::separator() + name + u".dat"_s;
}

bool ProfileFolders::IsInKindFolder(ProfileKind kind, const QString& file) const {
    return Describe(kind).hasFiles() &&
           Resolved(QFileInfo(AbsolutePath(file)).path())
                   .compare(Resolved(KindFolder(kind)), Qt::CaseInsensitive) == 0;
}

bool IsProfileCommand(const QString& choice) {
    return choice == kAddProfileChoice || choice == kViewProfileChoice;
}

QStringList DailyProfileChoices(const QStringList& names) {
    return QStringList{kAddProfileChoice.toString(), kViewProfileChoice.toString()} + names;
}

bool IsStorableName(const QString& name) {
    constexpr std::array<char16_t, 3> kForbidden = {u'"', u'\n', u'\r'};
    return std::none_of(kForbidden.begin(), kForbidden.end(),
                        [&name](char16_t c) { return name.contains(c); }) &&
           FromCp1252(ToCp1252(name)) == name;
}

bool IsChoosableName(const QString& name) {
    return IsStorableName(name) && !IsProfileCommand(name);
}
