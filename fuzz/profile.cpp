// A profile file is read into a session, saved and read again.
// Input: a byte for kind and mode; then the file.

#include "app/EnglishAtof.h"
#include "fuzz/Harness.h"
#include "profiles/FileDialogs.h"
#include "profiles/ProfileFile.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int kViewOnly = 8;

// What was written, as a file that can be read: a function is written under other keywords.
ProfileReading ReadBack(ProfileKind kind, QByteArray written) {
    if (kind == ProfileKind::Function)
        written.replace("Value of time =", "AZIMUT =").replace("Value of function =", "HAUTEUR =");
    return ParseProfile(kind, written);
}

bool SameNumber(const QString& left, const QString& right) {
    return EnglishAtof(left) == EnglishAtof(right);
}

// The file holds the rows as they stand.
void CheckSave(Editing& editing) {
    const ProfileTable& table = editing.table();
    ProfileSession& session = editing.session();
    session.SaveAs();
    Require(!session.isModified() && session.isSaved(), "a save is remembered");
    const QStringList values = table.Column(ProfileTable::kValueColumn);
    const QByteArray saved = ReadScratch(session.path());
    session.Save();
    Require(ReadScratch(session.path()) == saved, "a second save writes the same");
    const ProfileReading reading = ReadBack(session.kind(), saved);
    const ProfileContent& content = reading.content;
    Require(reading.status == ProfileFileStatus::Read, "a saved profile can be read");
    Require(std::equal(content.values.cbegin(), content.values.cend(), values.cbegin(),
                       values.cend(), SameNumber) &&
                (session.facts().rows > 0 ||
                 content.labels == table.Column(ProfileTable::kLabelColumn)) &&
                content.names == table.Column(ProfileTable::kNameColumn),
            "a saved profile holds the rows");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input(data, size);
    const bool view_only = !input.rest.isEmpty() && (input.rest.front() & kViewOnly) != 0;
    const ProfileKind kind = input.Kind();
    const QString path = ScratchPath(u"read.dat"_s);
    WriteScratch(path, input.rest);
    const Prompts prompts;
    SetFileDialogHandler({{}, [](const FileRequest&) { return ScratchPath(u"saved"_s); }});

    Editing editing(kind, "1 2 3", view_only ? DisplayMode::View : DisplayMode::Edit);
    ProfileSession& session = editing.session();
    const QByteArray before = editing.State();
    const bool was_saved = session.isSaved();
    const ProfileReading reading = ParseProfile(kind, input.rest);
    const ProfileContent& content = reading.content;
    Require(session.ReadFile(path) == reading.status, "a session reads what a file holds");
    if (reading.status != ProfileFileStatus::Read) {
        Require(prompts.messages.size() == 1, "a refusal says so");
        Require(editing.State() == before && session.isSaved() == was_saved,
                "a refused file changes nothing");
        return 0;
    }
    Require(prompts.messages.isEmpty(), "an accepted file brings no message");
    Require(session.path() == path && !session.canUndo() && !session.isModified(),
            "a file begins anew");
    editing.Check();
    const ProfileTable& table = editing.table();
    const bool as_they_stand = !session.facts().coefficients || view_only;
    Require(!as_they_stand || content.values.isEmpty() ||
                table.Column(ProfileTable::kValueColumn) == content.values,
            "cells show the values of the file");
    Require(content.names.isEmpty() || table.Column(ProfileTable::kNameColumn) == content.names,
            "cells show the names of the file");

    const ProfileReading again = ReadBack(kind, WriteProfile(kind, content, reading.line_end));
    Require(again.status == ProfileFileStatus::Read && again.line_end == reading.line_end &&
                again.content.labels == content.labels && again.content.values == content.values &&
                again.content.names == content.names,
            "what was read is written");
    if (session.canSaveAs())
        CheckSave(editing);
    return 0;
}
