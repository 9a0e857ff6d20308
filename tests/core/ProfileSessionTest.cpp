// SPDX-License-Identifier: GPL-3.0-or-later
#include "SessionBench.h"
#include "SystemSkips.h"
#include "VectorFile.h"
#include "base/EnglishAtof.h"
#include "profiles/Coefficients.h"
#include "profiles/ProfileFile.h"
#include "profiles/ProfileFolders.h"

#include <QJsonDocument>

#include <cstdlib>
#include <functional>
#include <map>

using namespace Qt::StringLiterals;

namespace {

constexpr int kLabel = ProfileTable::kLabelColumn;
constexpr int kValue = ProfileTable::kValueColumn;
constexpr int kName = ProfileTable::kNameColumn;

// The cases name their files below the program folder, or, from "." or "/" on, as they stand. In
// texts the folder is "DIR".
QString PathIn(const SessionBench& bench, const QString& path) {
    return path.isEmpty() || path.startsWith(u"./") || path.startsWith(u'/') ? path
                                                                             : bench.Path(path);
}

// The history's floats without the empty slots at the ends of rows.
QString HistoryText(const ProfileSession& session) {
    QStringList rows;
    for (const auto& row : session.history().Table(session.dailyProfiles())) {
        QStringList numbers;
        for (const float number : row)
            numbers.append(QString::number(number));
        while (!numbers.isEmpty() && numbers.last() == QString::number(EditHistory::kEmptySlot))
            numbers.removeLast();
        rows.append(numbers.join(u' '));
    }
    return rows.join(u'|');
}

// All of a session that a user can see or that a command depends on.
QJsonObject State(const SessionBench& bench) {
    const ProfileSession& session = *bench.session;
    const ProfileTable& table = session.table();
    QStringList headers;
    for (int column = 1; column <= table.ColumnCount(); ++column)
        headers += table.HeaderText(column);
    const std::pair<QString, bool> flags[] = {
        {u"modified"_s, session.isModified()}, {u"saved"_s, session.isSaved()},
        {u"edition"_s, session.isEdition()},   {u"view"_s, session.isViewOnly()},
        {u"dragging"_s, session.isDragging()}, {u"undo"_s, session.canUndo()},
        {u"redo"_s, session.canRedo()},        {u"add"_s, session.canAdd()},
        {u"remove"_s, session.canRemove()},    {u"adjust"_s, session.canEditCoefficients()},
        {u"copy"_s, session.canCopy()},        {u"paste"_s, session.canPaste()},
        {u"open"_s, session.canOpen()},        {u"save"_s, session.canSave()},
        {u"save as"_s, session.canSaveAs()}};
    QJsonObject state;
    for (const auto& [name, is_on] : flags)
        state[name] = is_on;
    const std::pair<QString, QString> texts[] = {{u"headers"_s, headers.join(u'|')},
                                                 {u"labels"_s, table.Column(kLabel).join(u'|')},
                                                 {u"values"_s, table.Column(kValue).join(u'|')},
                                                 {u"names"_s, table.Column(kName).join(u'|')},
                                                 {u"choices"_s, table.Choices().join(u'|')},
                                                 {u"daily"_s, session.dailyProfiles().join(u'|')},
                                                 {u"name"_s, session.name()},
                                                 {u"caller's name"_s, session.nameForCaller()},
                                                 {u"saved name"_s, session.savedName()},
                                                 {u"path"_s, session.path()},
                                                 {u"title"_s, session.chartTitle()},
                                                 {u"caption"_s, session.caption()},
                                                 {u"history"_s, HistoryText(session)},
                                                 {u"working folder"_s, QDir::currentPath()}};
    for (const auto& [name, text] : texts)
        state[name] = QDir::fromNativeSeparators(text).replace(bench.folder.path(), u"DIR"_s);
    return state;
}

QString Request(const SessionBench& bench) {
    const FileRequest& request = bench.dialogs.LastRequest();
    QStringList parts = {
        QDir::fromNativeSeparators(request.folder).replace(bench.folder.path(), u"DIR"_s)};
    for (const auto& type : request.types)
        parts += {type.caption, type.pattern};
    return (parts + QStringList{request.default_suffix}).join(u'|');
}

bool Shell(const QString& folder, const QString& command) {
    return std::system(qPrintable(u"cd '%1' && %2"_s.arg(folder, command))) == 0;
}

bool Type(QAbstractItemModel* model, int row, int column, const QString& text) {
    return model->setData(model->index(row - 1, column - 1), text, Qt::EditRole);
}

// Does one step of a case: a command with what it takes. Returns what the session returned.
bool Do(SessionBench& bench, const QJsonArray& step) {
    ProfileSession* const session = bench.session.get();
    const int row = step[1].toInt();
    const QString text = step.last().toString();
    const QString path = PathIn(bench, text);
    QString message = step[1].toString();
    message.replace(u"DIR"_s, bench.folder.path());
    QList<int> rows;
    const QJsonArray numbers = step[1].toArray();
    for (const QJsonValue& number : numbers)
        rows.append(number.toInt());
    bool result = true;
    const std::map<QString, std::function<void()>> commands = {
        // What comes from outside.
        {u"message"_s, [&] { bench.messages.Expect(message, step[2].toString()); }},
        {u"question"_s, [&] { bench.messages.ExpectQuestion(message, {}, step[2].toBool()); }},
        {u"choose"_s, [&] { bench.dialogs.ExpectOpen(path); }},
        {u"write"_s, [&] { result = WriteAll(PathIn(bench, message), VectorBytes(step[2])); }},
        {u"shell"_s, [&] { result = Shell(bench.folder.path(), text); }},
        {u"folder"_s, [&] { result = QDir(bench.folder.path()).mkpath(text); }},
        {u"delete folder"_s, [&] { result = QDir(path).removeRecursively(); }},
        {u"read-only"_s, [&] { result = QFile::setPermissions(path, QFile::ReadOwner); }},
        {u"go there"_s, [&] { result = QDir::setCurrent(bench.folder.path()); }},
        // What the dialog does.
        {u"start"_s,
         [&] {
             const auto mode = static_cast<DisplayMode>(step[2].toInt());
             result = bench.Start(bench.Setup(static_cast<ProfileKind>(row), mode, path));
         }},
        {u"open"_s, [&] { bench.Open(path); }},
        {u"read"_s, [&] { result = session->ReadFile(path) == ProfileFileStatus::Read; }},
        {u"save"_s, [&] { session->Save(); }},
        {u"save as"_s, [&] { bench.SaveAs(path); }},
        {u"save as, refused"_s, [&] { session->SaveAs(); }},
        {u"change"_s, [&] { session->SetModified(); }},
        {u"undo"_s, [&] { result = session->Undo(); }},
        {u"redo"_s, [&] { result = session->Redo(); }},
        {u"time"_s, [&] { session->EnterTime(row, step[2].toInt(), text); }},
        {u"value"_s, [&] { session->EnterValue(row, text); }},
        {u"name"_s, [&] { session->EnterName(row, text); }},
        {u"column"_s, [&] { session->EnterColumn(Texts(text), row); }},
        {u"type"_s, [&] { result = Type(session->model(), row, step[2].toInt(), text); }},
        {u"replace"_s, [&] { session->ReplaceRows(Texts(message), Texts(text)); }},
        {u"edition"_s, [&] { session->SetEdition(step[1].toBool()); }},
        {u"empty step"_s, [&] { session->EnterSeries(1, {}, {HistoryStep{}}); }},
        {u"adjust"_s, [&] { session->Adjust(); }},
        {u"remove"_s, [&] { result = session->RemoveRows(rows); }},
        {u"press"_s, [&] { session->BeginDrag(row); }},
        {u"drag"_s, [&] { session->DragTo(text); }},
        {u"drag in time"_s, [&] { session->DragTo(message, text); }},
        {u"release"_s, [&] { session->EndDrag(); }},
        {u"add daily"_s, [&] { session->AddDailyProfile(text); }}};
    commands.at(step[0].toString())();
    return result;
}

// Which of the expected facts do not hold. A key with a dot is a file, with its content.
QString Faults(const SessionBench& bench, const QJsonObject& state, const QJsonObject& expected) {
    const QStringList lists = {u"labels"_s, u"values"_s, u"names"_s, u"choices"_s, u"daily"_s};
    QString faults;
    for (const QString& key : expected.keys()) {
        QJsonValue wanted = expected[key];
        QJsonValue found = state[key];
        if (key.contains(u'.')) {
            wanted = QString::fromLatin1(WithPlainEnds(VectorBytes(wanted)));
            found = QString::fromLatin1(WithPlainEnds(ReadAll(bench.Path(key))));
        } else if (lists.contains(key)) {
            wanted = Texts(wanted.toString()).join(u'|');
        }
        if (found != wanted)
            faults += u"%1 is \"%2\"\n"_s.arg(key, found.toVariant().toString());
    }
    return faults;
}

ProfileFolders Shipped() {
    return ProfileFolders(QStringLiteral(RESOURCES_DIR));
}

}  // namespace

class ProfileSessionTest : public QObject {
    Q_OBJECT

private slots:
    void init() { SkipOnThisSystem(); }

    // What a user does, step by step, and what is seen of it. A step is a command, or an object of
    // what holds then: of the session, of files, of what the last command returned.
    void sessions_data() { AddVectorRows("sessions"); }
    void sessions() {
        QFETCH(const QJsonObject, vector);
        const QJsonValue given = vector[u"given"];
        SessionBench bench(given[u"points"].toString());
        if (given[u"points"].isUndefined()) {
            bench.times = Texts(given[u"times"].toString());
            bench.values = Texts(given[u"values"].toString());
            bench.names = Texts(given[u"names"].toString());
        }
        QJsonObject before;
        bool returned = true;
        QString restored;
        const QJsonArray steps = vector[u"steps"].toArray();
        QVERIFY(steps.last().isObject());
        for (const QJsonValue& step : steps) {
            if (step[0] == u"remember"_s) {
                before = State(bench);
            } else if (step.isArray()) {
                returned = Do(bench, step.toArray());
                if (step[0] == u"start"_s)
                    connect(
                        bench.session.get(), &ProfileSession::CellRestored, bench.session.get(),
                        [&](int row, int column) { restored = u"%1|%2"_s.arg(row).arg(column); });
            } else {
                QJsonObject state = State(bench);
                state[u"as before"_s] = state == before;
                state[u"returned"_s] = returned;
                state[u"restored"_s] = restored;
                state[u"request"_s] = Request(bench);
                QCOMPARE(Faults(bench, state, step.toObject()), QString());
            }
        }
        QVERIFY2(bench.messages.Done(), qPrintable(bench.messages.Report()));
    }

    // The first edit of a million points copies its column, for the way back; no other may.
    void listsAreTakenOver() {
        SessionBench bench;
        SessionSetup setup = bench.Setup(ProfileKind::Function);
        setup.times = setup.values = QStringList(3, u"1"_s);
        setup.values.detach();
        QVERIFY(bench.Start(std::move(setup)));
        for (const int column : {kLabel, kValue}) {
            const QString* cells = nullptr;
            for (const QString& text : {u"2"_s, u"3"_s}) {
                column == kValue ? bench.session->EnterValue(2, text)
                                 : bench.session->EnterTime(2, 2, text);
                QVERIFY(cells == nullptr || cells == bench.Column(column).constData());
                cells = bench.Column(column).constData();
            }
        }
    }

    // Every file of the vectors, parsed and then opened as a user opens it.
    void files_data() { AddVectorRows("dat_read"); }
    void files() {
        QFETCH(QJsonObject, vector);
        const QJsonObject input = vector[u"input"].toObject();
        const QJsonObject expected = vector[u"expected"].toObject();
        const auto kind = VectorKind(input[u"kind"]);
        SessionBench bench;
        const QString path = bench.Path(u"file.dat"_s);
        if (!input[u"file"].isNull()) {
            const QByteArray bytes = VectorBytes(input[u"file"]);
            QVERIFY(WriteAll(path, bytes));
            const ProfileReading parsed = ParseProfile(kind, bytes);
            QCOMPARE(parsed.status != ProfileFileStatus::WrongHeader,
                     expected[u"header_ok"].toBool());
            const bool crlf = bytes.left(bytes.indexOf('\n')).endsWith('\r');
            QCOMPARE(parsed.line_end,
                     crlf && parsed.status == ProfileFileStatus::Read ? "\r\n" : "");
        }
        for (QString message : VectorStrings(expected[u"messages"]))
            bench.messages.Expect(message.replace(input[u"path"].toString(), path));
        const bool refused = !expected[u"messages"].toArray().isEmpty();
        const bool stays = bench.Start(bench.Setup(
            kind, input[u"view_only"].toBool() ? DisplayMode::View : DisplayMode::OpenFile, path));
        QCOMPARE(stays, !refused || input[u"file"].isNull());
        QCOMPARE(bench.session->isSaved(), !refused);
        QCOMPARE(bench.session->lastRead().has_value(), !refused);
        QVERIFY(!bench.session->isModified());
        if (refused)
            return;
        const ProfileContent& read = *bench.session->lastRead();
        QCOMPARE(read.labels, VectorStrings(expected[u"times"]));
        QCOMPARE(read.values, VectorStrings(expected[u"values"]));
        QCOMPARE(read.names, VectorStrings(expected[u"names"]));
        QStringList values = VectorStrings(expected[u"cells"]);
        if (kind == ProfileKind::Function)
            values = VectorStrings(expected[u"values"]);
        else if (expected[u"cells"].isNull())
            values.fill(QString::number(Describe(kind).default_value), Describe(kind).rows);
        QCOMPARE(bench.Column(kLabel), kind == ProfileKind::Function
                                           ? VectorStrings(expected[u"times"])
                                           : RowLabelTexts(kind));
        QCOMPARE(bench.Values().size(), values.size());
        for (qsizetype i = 0; i < values.size(); ++i)
            QCOMPARE(EnglishAtof(bench.Values()[i]), EnglishAtof(values[i]));
        if (Describe(kind).hasNames() && !read.names.isEmpty())
            QCOMPARE(bench.Column(kName), read.names);
        QCOMPARE(QStringList({bench.session->name(), bench.session->nameForCaller(),
                              QDir::fromNativeSeparators(bench.session->path())}),
                 QStringList({u"file"_s, u"été"_s, path}));
        QVERIFY(!bench.session->canUndo());
    }

    void foldersStayWhenTheWorkingFolderChanges() {
        const QString before = QDir::currentPath();
        const QTemporaryDir here;
        QVERIFY(QDir(here.path()).mkdir(u"program"_s) && QDir::setCurrent(here.path()));
        const ProfileFolders folders(u"program"_s);
        const QString expected = QDir::currentPath() + u"/program/Data/Profils/Mensuel"_s;
        QVERIFY(QDir::setCurrent(before));
        QCOMPARE(QDir::fromNativeSeparators(folders.KindFolder(ProfileKind::Monthly)), expected);
    }

    // The profiles that come with the program: each can be read, keeps the rules of its kind and
    // names only daily profiles that are there.
    void shipped_data() {
        QTest::addColumn<ProfileKind>("kind");
        QTest::addColumn<QString>("path");
        for (int number = -1; number <= 3; ++number) {
            const auto kind = static_cast<ProfileKind>(number);
            const QDir folder(Shipped().KindFolder(kind));
            const QStringList files = folder.entryList(QDir::Files);
            QVERIFY2(files.size() >= 2, qPrintable(folder.path()));
            for (const QString& file : files)
                QTest::addRow("%d %s", number, qPrintable(file)) << kind << folder.filePath(file);
        }
    }
    void shipped() {
        QFETCH(const ProfileKind, kind);
        QFETCH(const QString, path);
        const MessageScript script;
        const ProfileReading reading = ReadProfile(kind, path);
        QCOMPARE(reading.status, ProfileFileStatus::Read);
        const ProfileContent& content = reading.content;
        QVERIFY(content.values.size() >= 2);

        if (Describe(kind).coefficients) {
            int hundredths = 0;
            for (const QString& value : content.values)
                hundredths += QString(value).remove(u'.').toInt();
            QCOMPARE(hundredths, 100 * CoefficientCount(kind));
            QVERIFY(SumIsRight(kind, RoundedSum(kind, content.values)));
        }
        const QStringList daily = Shipped().DailyProfileList();
        for (const QString& name : content.names)
            QVERIFY2(daily.contains(name), qPrintable(name));

        // Masks are written in another form than they are read in.
        if (kind == ProfileKind::Function)
            return;
        const ProfileContent written = {RowLabelTexts(kind), content.values, content.names};
        QCOMPARE(ReadAll(path), WriteProfile(kind, written, "\n"));
    }
};

QTEST_GUILESS_MAIN(ProfileSessionTest)
#include "ProfileSessionTest.moc"
