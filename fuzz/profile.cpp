// SPDX-License-Identifier: GPL-3.0-or-later
// A profile file is read into a session, saved and read again.
// Input: a byte for kind and mode; then the file.

#include "base/EnglishAtof.h"
#include "base/FileDialogs.h"
#include "fuzz/Harness.h"
#include "profiles/ProfileFile.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int kViewOnly = 8;

// The file holds the rows as they stand.
void CheckSave(Editing& editing) {
    const ProfileTable& table = editing.session.table();
    ProfileSession& session = editing.session;
    session.SaveAs();
    Require(!session.isModified() && session.isSaved(), "a save is remembered");
    const QByteArray saved = ReadAll(session.path());
    session.Save();
    Require(ReadAll(session.path()) == saved, "a second save writes the same");
    RequireNone(CheckWritten(
        session.kind(), saved,
        {table.Column(ProfileTable::kLabelColumn), table.Column(ProfileTable::kValueColumn),
         table.Column(ProfileTable::kNameColumn)}));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input(data, size);
    const bool view_only = !input.rest.isEmpty() && (input.rest.front() & kViewOnly) != 0;
    const ProfileKind kind = input.Kind();
    const QString path = ScratchPath(u"read.dat"_s);
    WriteAll(path, input.rest.toByteArray());
    SetFileDialogHandler(
        {{}, [](const FileRequest&) { return ChosenFile{ScratchPath(u"saved"_s)}; }});

    Editing editing(kind, "1 2 3", view_only ? DisplayMode::View : DisplayMode::Edit);
    ProfileSession& session = editing.session;
    const QByteArray before = editing.State();
    const bool was_saved = session.isSaved();
    const ProfileReading reading = ParseProfile(kind, input.rest);
    const ProfileContent& content = reading.content;
    Require(session.ReadFile(path) == reading.status, "a session reads what a file holds");
    if (reading.status != ProfileFileStatus::Read) {
        Require(editing.prompts.messages.size() == 1, "a refusal says so");
        Require(editing.State() == before && session.isSaved() == was_saved,
                "a refused file changes nothing");
        return 0;
    }
    Require(editing.prompts.messages.isEmpty(), "an accepted file brings no message");
    Require(session.path() == path && !session.canUndo() && !session.isModified(),
            "a file begins anew");
    editing.Check();
    const ProfileTable& table = editing.session.table();
    const bool as_they_stand = !session.facts().coefficients || view_only;
    Require(!as_they_stand || content.values.isEmpty() ||
                table.Column(ProfileTable::kValueColumn) == content.values,
            "cells show the values of the file");
    Require(content.names.isEmpty() || table.Column(ProfileTable::kNameColumn) == content.names,
            "cells show the names of the file");

    const QByteArray again = WriteProfile(kind, content, reading.line_end);
    RequireNone(CheckWritten(kind, again, content));
    Require(ParseProfile(kind, again).line_end == reading.line_end || kind == ProfileKind::Function,
            "line ends stay");
    if (session.canSaveAs())
        CheckSave(editing);
    return 0;
}
