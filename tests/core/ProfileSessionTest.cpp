// SPDX-License-Identifier: GPL-3.0-or-later
#include "SessionBench.h"
#include "VectorFile.h"
#include "base/EnglishAtof.h"
#include "profiles/ProfileFile.h"

using namespace Qt::StringLiterals;

namespace {

using enum ProfileKind;

constexpr int kLabel = ProfileTable::kLabelColumn;
constexpr int kValue = ProfileTable::kValueColumn;
constexpr int kName = ProfileTable::kNameColumn;

const QString kWriteFailed = u"Ecriture impossible !"_s;
const QString kReadOnly = u"Fichier non modifiable"_s;
const QString kNoPath =
    u"Aucun nom n'a été sélectionné\npour la sauvegarde des données.\nChoisissez Enregistrer Sous"_s;
const QString kElsewhere =
    u"Ce profil n'est pas enregistré dans le répertoire par défaut\nil ne sera pas enregistré dans les paramètres de la simulation."_s;

QString MeanQuestion(const QString& mean) {
    return u"La moyenne des coefficients\nmultiplicateurs doit être de 1.\nElle vaut actuellement "_s +
           mean + u".\nVoulez-vous ajuster ces valeurs ?"_s;
}

QString NotValid(const QString& path) {
    return u"Le fichier \""_s + path + u"\" n'est pas valable ici !"_s;
}

QString NotOpened(const QString& path) {
    return u"Le fichier \""_s + path + u"\"n'a pas pu être ouvert!"_s;
}

// All of a session that a user can see or that a command depends on.
QStringList Everything(const ProfileSession& session) {
    QStringList all;
    for (int column = 0; column <= session.table().ColumnCount(); ++column)
        all +=
            session.table().HeaderText(column) + u':' + session.table().Column(column).join(u'|');
    all += {session.name(), session.path(), session.caption(), session.savedName()};
    for (const bool flag : {session.isModified(), session.isSaved(), session.isEdition(),
                            session.canUndo(), session.canRedo()})
        all += flag ? u"yes"_s : u"no"_s;
    return all;
}

struct Bench : SessionBench {
    using SessionBench::SessionBench;

    QString KindPath(const QString& file) const {
        return QDir(session->folders().KindFolder(session->kind())).filePath(file);
    }
    // Makes the folder.
    void SaveAs(const QString& path) {
        if (!path.isEmpty())
            QDir().mkpath(QFileInfo(path).path());
        SessionBench::SaveAs(path);
    }
};

struct FillRow {
    int kind;
    int mode;
    QString times;
    QString values;
    QString shown;
    QString names = {};
    QString shown_names = {};
};

struct SaveRow {
    ProfileKind kind;
    QString cell;  // what all cells hold
    QString mean;  // in the question; "" when none is due
    bool yes;
    bool has_path;
    QString adjusted = u"1"_s;  // what all cells hold after a yes
};

struct SaveAsRow {
    ProfileKind kind;
    QString chosen;          // below the program folder
    const char* extension;   // that is added
    QString names;           // of the caller, in the caption, of the save
    bool elsewhere = false;  // brings up the warning
};

const QByteArray kWeeklyFile =
    "JOURS = 1 2 3 4 5 6 7\nCONSOMMATION = 1 2 3 4 5 6 7\n"
    "PROFIL = \"a\" \"b\" \"gone\" \"d\" \"\" \"f\" \"g\"\n";
const QByteArray kDailyFile = "HEURES =\nCOEFFICIENT =" + QByteArray(" 2").repeated(24) + '\n';

}  // namespace

class ProfileSessionTest : public QObject {
    Q_OBJECT

private slots:
    void titles() {
        const QString titles[] = {u" \nété"_s,
                                  u"Profil Annuel : été"_s,
                                  u"Profil Mensuel : \nété"_s,
                                  u"Profil Hebdomadaire : \nété"_s,
                                  u"Profil Journalier : été"_s,
                                  {}};
        for (int kind = -1; kind <= 4; ++kind) {
            const Bench bench(static_cast<ProfileKind>(kind));
            const ProfileSession& session = *bench.session;
            QCOMPARE(session.chartTitle(), titles[kind + 1]);
            QCOMPARE(session.caption(), QString(titles[kind + 1]).remove(u'\n'));
            QVERIFY(session.canOpen() == (kind <= 3) && session.canSaveAs() == (kind <= 3));
            QVERIFY(!session.canSave());
        }
    }

    void initialFill_data() {
        AddRows<FillRow>(
            {{"function, as handed over", {-1, 3, u"3|1.50|x"_s, u"1e1||-0"_s, u"1e1||-0"_s}},
             {"values short", {-1, 3, u"1|2|3"_s, u"5|6"_s, u"5|6"_s}},
             {"times short", {-1, 3, u"1"_s, u"5|6"_s, u"5"_s}},
             {"function, other mode", {-1, 0, u"1"_s, u"5"_s, {}}},
             {"annual, one too many", {0, 3, {}, u"1.0*13"_s, u"1.0*12"_s}},
             {"annual, two values, rescaled", {0, 3, {}, u"2|2"_s, u"1.69|1.71|0.86*10"_s}},
             {"annual, nothing", {0, 3, {}, {}, u"1*12"_s}},
             {"annual, other mode", {0, 7, {}, u"2*12"_s, u"1*12"_s}},
             {"daily, rescaled", {3, 3, {}, u"2*24"_s, u"1*24"_s}},
             {"monthly, values short, names long",
              {1, 3, {}, u"7.5|8"_s, u"7.5|8|1800*10"_s, u"n*13"_s, u"n*12"_s}},
             {"weekly receives nothing", {2, 3, {}, u"5*7"_s, u"100*7"_s, u"n*7"_s, u"*7"_s}}});
    }
    void initialFill() {
        QFETCH(FillRow, row);
        Bench bench(row.times);
        bench.values = Texts(row.values);
        bench.names = Texts(row.names);
        QVERIFY(bench.Start(bench.Setup(ProfileKind{row.kind}, DisplayMode{row.mode})));
        QCOMPARE(bench.Values(), Texts(row.shown));
        QCOMPARE(bench.Column(kName), Texts(row.shown_names));
        QCOMPARE(bench.Column(kLabel), row.kind == -1 ? bench.times.first(bench.Values().size())
                                                      : RowLabelTexts(ProfileKind{row.kind}));
        QVERIFY(!bench.session->canUndo() && !bench.session->canRedo());
        QVERIFY(!bench.session->isSaved());
    }

    // An edit of a million points must not copy the column.
    void listsAreTakenOver() {
        Bench bench;
        SessionSetup setup = bench.Setup(Function);
        setup.times = setup.values = QStringList(3, u"1"_s);
        setup.values.detach();
        QVERIFY(bench.Start(std::move(setup)));
        for (const int column : {kLabel, kValue}) {
            const QString* const cells = bench.Column(column).constData();
            bench.session->table().SetCellText(2, column, u"2"_s);
            QCOMPARE(bench.Column(column).constData(), cells);
        }
    }

    // Every file of the vectors, parsed and then opened as a user opens it.
    void files_data() { AddVectorRows("dat_read"); }
    void files() {
        QFETCH(QJsonObject, vector);
        const QJsonObject input = vector[u"input"].toObject();
        const QJsonObject expected = vector[u"expected"].toObject();
        const auto kind = VectorKind(input[u"kind"]);
        Bench bench;
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
        if (kind == Function)
            values = VectorStrings(expected[u"values"]);
        else if (expected[u"cells"].isNull())
            values.fill(QString::number(Describe(kind).default_value), Describe(kind).rows);
        QCOMPARE(bench.Column(kLabel),
                 kind == Function ? VectorStrings(expected[u"times"]) : RowLabelTexts(kind));
        QCOMPARE(bench.Values().size(), values.size());
        for (qsizetype i = 0; i < values.size(); ++i)
            QCOMPARE(EnglishAtof(bench.Values()[i]), EnglishAtof(values[i]));
        if (Describe(kind).hasNames() && !read.names.isEmpty())
            QCOMPARE(bench.Column(kName), read.names);
        QCOMPARE(QStringList({bench.session->name(), bench.session->nameForCaller(),
                              bench.session->path()}),
                 QStringList({u"file"_s, u"été"_s, path}));
        QVERIFY(!bench.session->canUndo());
    }

    // The path means what the system means by it, as seen from the working folder of the start.
    void relativePathAtStart() {
        Bench bench;
        QVERIFY(WriteAll(bench.Path(u"sub/w.dat"_s), kWeeklyFile));
        QVERIFY(QDir(bench.folder.path()).mkpath(u"Data/Profils/Semaines"_s));
        QVERIFY(QDir(bench.folder.path()).mkpath(u"sub/below"_s));
        QVERIFY(QFile::link(bench.Path(u"sub/below"_s), bench.Path(u"link"_s)));
        const std::pair<QString, bool> cases[] = {
            {u"sub/w.dat"_s, true}, {u"link/../w.dat"_s, true}, {u"none/w.x.dat"_s, false}};
        for (const auto& [path, is_there] : cases) {
            QDir::setCurrent(bench.folder.path());
            if (!is_there)
                bench.messages.Expect(NotOpened(path));
            QVERIFY(bench.Start(bench.Setup(Weekly, DisplayMode::OpenFile, path)));
            QCOMPARE(bench.Values(), Texts(is_there ? u"1|2|3|4|5|6|7"_s : u"100*7"_s));
            QCOMPARE(bench.session->path(), is_there ? bench.Path(path) : QString());
            QCOMPARE(bench.session->name(), is_there ? u"w"_s : u"w.x"_s);
            QCOMPARE(QDir::current(), QDir(bench.Path(u"Data/Profils/Semaines"_s)));
        }
        QVERIFY(WriteAll(bench.KindPath(u"wrong.dat"_s), "x"));
        bench.messages.Expect(NotValid(u"wrong.dat"_s));
        QCOMPARE(bench.session->ReadFile(u"wrong.dat"_s), ProfileFileStatus::WrongHeader);
    }

    void askedAtStart() {
        Bench bench;
        const QString path = bench.Path(u"jour.été.dat"_s);
        QVERIFY(WriteAll(path, kDailyFile));
        bench.dialogs.ExpectOpen(path);
        QVERIFY(bench.Start(bench.Setup(Daily, DisplayMode::OpenFile)));
        QCOMPARE(bench.session->caption(), u"Profil Journalier : jour.été"_s);
        const FileRequest& request = bench.dialogs.LastRequest();
        QCOMPARE(QDir(request.folder), QDir(bench.Path(u"Data/Profils/Journalier"_s)));
        QCOMPARE(request.types.size(), 2);
        QCOMPARE(request.types[0].caption, u"Fichiers Textes (*.dat)"_s);
        QCOMPARE(request.types[1].caption, u"All Files (*.*)"_s);
        QCOMPARE(request.default_suffix, u"dat"_s);
        bench.dialogs.ExpectOpen({});
        QVERIFY(!bench.Start(bench.Setup(Daily, DisplayMode::View)));
    }

    void refusedFileChangesNothing() {
        const std::pair<ProfileKind, QByteArray> files[] = {
            {Weekly, {}},  // is not there
            {Weekly, "JOURS =\nCONSOMMATION = 1 2 3 4 5 6 7\nPROFIL = \"a\"\n"},
            {Daily, "HEURES =\nCOEFFICIENT = 1 x\n"},
            {Function, "Value of time = 1 2\nValue of function = 1 2\n"}};
        for (const auto& [kind, bytes] : files) {
            Bench bench(kind, u"1|2|3"_s);
            if (Describe(kind).coefficients)
                bench.session->SetEdition(true);
            else
                bench.session->EnterValue(2, u"9"_s);
            bench.SaveAs(bench.KindPath(u"was"_s));
            bench.session->EnterValue(1, u"4.5"_s);
            bench.session->EnterValue(2, u"5.5"_s);
            QVERIFY(bench.session->Undo());
            const QStringList before = Everything(*bench.session);
            const QString path = bench.Path(u"refused.dat"_s);
            QVERIFY(bytes.isEmpty() || WriteAll(path, bytes));
            bench.messages.Expect(bytes.isEmpty() ? NotOpened(path) : NotValid(path));
            bench.Open(path);
            bench.Open({});
            QCOMPARE(Everything(*bench.session), before);
            QVERIFY(bench.session->Redo());
            QCOMPARE(bench.Values()[1], u"5.5"_s);
        }
    }

    // A value line without values leaves the column, and any file read forgets what was done
    // before.
    void emptyValueLine() {
        Bench bench(Annual);
        bench.session->SetEdition(true);
        bench.session->EnterValue(2, u"1.5"_s);
        const QStringList entered = bench.Values();
        const QString path = bench.Path(u"a.dat"_s);
        QVERIFY(WriteAll(path, "MOIS = 1\nCOEFFICIENT =\n") && bench.session->canUndo());
        QCOMPARE(bench.session->ReadFile(path), ProfileFileStatus::Read);
        QCOMPARE(bench.Values(), entered);
        QVERIFY(!bench.session->canUndo() && !bench.session->canRedo());
        QVERIFY(!bench.session->isModified() && bench.session->isSaved());
    }

    void lineEnds() {
        for (const QByteArray line_end : {"\n", "\r\n"}) {
            Bench bench(Weekly);
            const QString path = bench.Path(u"w.dat"_s);
            QVERIFY(WriteAll(path, QByteArray(kWeeklyFile).replace("\n", line_end)));
            QCOMPARE(bench.session->ReadFile(path), ProfileFileStatus::Read);
            bench.session->EnterValue(1, u"10"_s);
            bench.session->Save();
            const QByteArray written =
                "JOURS = Lundi Mardi Mercredi Jeudi Vendredi Samedi Dimanche" + line_end +
                "CONSOMMATION = 10 2 3 4 5 6 7" + line_end +
                "PROFIL = \"a\" \"b\" \"gone\" \"d\" \"\" \"f\" \"g\"" + line_end;
            QCOMPARE(ReadAll(path), written);
            bench.SaveAs(bench.Path(u"copy"_s));
            QCOMPARE(ReadAll(bench.Path(u"copy.dat"_s)), written);
        }
    }

    void save_data() {
        AddRows<SaveRow>(
            {{"right", {Annual, u"1"_s, {}, false, true}},
             {"wrong, yes", {Annual, u"1.1"_s, u"1.1000"_s, true, true}},
             {"wrong, no", {Annual, u"1.1"_s, u"1.1000"_s, false, true}},
             {"wrong, yes, no path", {Annual, u"1.1"_s, u"1.1000"_s, true, false}},
             {"wrong, no, no path", {Annual, u"1.1"_s, u"1.1000"_s, false, false}},
             {"rounds to the right sum", {Daily, u"0.99999"_s, {}, false, true}},
             {"daily, yes", {Daily, u"0.5"_s, u"0.5000"_s, true, true}},
             {"nothing to scale", {Daily, u"0"_s, u"0.0000"_s, true, true, u"0"_s}},
             {"too much to scale", {Annual, u"1e38"_s, u"inf"_s, true, true, u"1e38"_s}},
             {"weekly", {Weekly, u"3"_s, {}, false, true}},
             {"weekly, no path", {Weekly, u"3"_s, {}, false, false}}});
    }
    void save() {
        QFETCH(SaveRow, row);
        Bench bench(row.kind);
        const QString path = bench.KindPath(u"p.dat"_s);
        if (row.has_path)
            bench.SaveAs(path);
        const QByteArray old_file = ReadAll(path);
        if (Describe(row.kind).coefficients)
            bench.session->SetEdition(true);
        const QStringList column(Describe(row.kind).rows, row.cell);
        bench.session->EnterColumn(column, 1);
        const bool asked = !row.mean.isEmpty();
        if (asked)
            bench.messages.ExpectQuestion(MeanQuestion(row.mean), {}, row.yes);
        const bool goes_on = !asked || row.yes;
        if (goes_on && !row.has_path)
            bench.messages.Expect(kNoPath);
        QCOMPARE(bench.session->isSaved(), row.has_path);
        bench.session->Save();

        const bool written = goes_on && row.has_path;
        const QStringList after =
            goes_on && asked ? QStringList(column.size(), row.adjusted) : column;
        QCOMPARE(bench.Values(), after);
        QCOMPARE(bench.session->isModified(), !written);
        QCOMPARE(bench.session->isSaved(), row.has_path);
        if (written)
            QVERIFY(ReadAll(path).contains(" = " + after.join(u' ').toLatin1() + "\n"));
        else
            QCOMPARE(ReadAll(path), old_file);
        // The adjustment is a step of its own.
        if (after != column)
            QVERIFY(bench.session->Undo());
        QCOMPARE(bench.Values(), column);
    }

    void questionBeforeSaveAs() {
        Bench bench(Annual);
        bench.session->SetEdition(true);
        bench.session->EnterValue(1, u"2"_s);
        bench.messages.ExpectQuestion(MeanQuestion(u"1.0833"_s), {}, false);
        bench.session->SaveAs();
        bench.messages.ExpectQuestion(MeanQuestion(u"1.0833"_s), {}, true);
        bench.SaveAs({});
        QVERIFY(bench.session->path().isEmpty());
        QVERIFY(bench.Values()[0] != u"2"_s);
    }

    void saveAs_data() {
        const QString daily = u"Data/Profils/Journalier/"_s;
        AddRows<SaveAsRow>(
            {{"function", {Function, u"Data/Masques/a"_s, ".dat", u"été|été|a"_s}},
             {"function elsewhere", {Function, u"a.txt"_s, "", u"été|été|"_s}},
             {"annual", {Annual, u"Data/Profils/Annuel/a.b"_s, "", u"été|été|a"_s}},
             {"annual elsewhere", {Annual, u"d.e/a"_s, ".dat", u"été|été|"_s, true}},
             {"monthly elsewhere", {Monthly, u"a.dat"_s, "", u"été|été|"_s}},
             {"weekly elsewhere", {Weekly, u"a b"_s, ".dat", u"a b|a b|"_s}},
             {"daily", {Daily, daily + u"été 2"_s, ".dat", u"été 2|été 2|été 2"_s}},
             {"daily elsewhere",
              {Daily, u"Data/Profils/Annuel/a"_s, ".dat", u"BAD_PATH|a|"_s, true}},
             {"daily below its folder", {Daily, daily + u"b/a"_s, ".dat", u"BAD_PATH|a|"_s, true}},
             {"daily without a title", {Daily, daily + u".dat"_s, "", u"été|été|"_s}}});
    }
    void saveAs() {
        QFETCH(SaveAsRow, row);
        const auto& [kind, chosen, extension, names, elsewhere] = row;
        Bench bench(kind, u"1|2"_s);
        const QString path = bench.Path(chosen + QLatin1StringView(extension));
        const QString prefix = Describe(kind).title_prefix.toString().remove(u'\n');
        const QString expected = prefix + names.section(u'|', 1, 1);
        if (elsewhere)
            bench.messages.Expect(kElsewhere, u"Attention !"_s);
        bench.SaveAs(bench.Path(chosen));
        QCOMPARE(QDir(bench.dialogs.LastRequest().folder), QFileInfo(bench.KindPath(u"x"_s)).dir());
        QVERIFY(QFile::exists(path));
        QCOMPARE(bench.session->path(), path);
        QCOMPARE(bench.session->caption(), expected);
        // A plain save goes the same way.
        for (int saves = 0; saves < 2; ++saves) {
            QCOMPARE(bench.session->nameForCaller(), names.section(u'|', 0, 0));
            QCOMPARE(bench.session->savedName(), names.section(u'|', 2));
            QVERIFY(bench.session->isSaved() && !bench.session->isModified());
            QVERIFY(bench.session->canSave());
            bench.session->SetModified();
            bench.session->Save();
        }
        // The folder of the kind is left and entered again.
        if (names.startsWith(u"BAD_PATH")) {
            bench.SaveAs(bench.KindPath(u"in"_s));
            QCOMPARE(bench.session->nameForCaller(), u"in"_s);
            bench.session->Save();
            QCOMPARE(bench.session->nameForCaller(), u"in"_s);
        }
    }

    // A plain save goes to the opened file, inside or outside the folder of the kind.
    void saveAfterOpen() {
        Bench bench(Daily);
        const QString in = bench.KindPath(u"in.dat"_s);
        const QString out = bench.Path(u"out.dat"_s);
        QVERIFY(WriteAll(in, kDailyFile) && WriteAll(out, kDailyFile));
        QVERIFY(QFile::link(QFileInfo(in).path(), bench.Path(u"link"_s)));
        const std::pair<QString, QString> cases[] = {{out, u"BAD_PATH"_s},
                                                     {in, u"in"_s},
                                                     {out, u"BAD_PATH"_s},
                                                     {bench.Path(u"link/in.dat"_s), u"in"_s}};
        for (const auto& [path, name] : cases) {
            bench.Open(path);
            bench.session->Save();
            QCOMPARE(bench.session->nameForCaller(), name);
            QCOMPARE(bench.session->savedName(), name == u"in" ? name : QString());
        }
    }

    // What could not be read back is not written.
    void unreadableCells() {
        const std::tuple<ProfileKind, QString, QString, QString> cells[] = {
            {Monthly, {}, u"1"_s, u"a\"b"_s}, {Monthly, {}, u"1"_s, u"a\r\nb"_s},
            {Monthly, {}, u"1"_s, u"Ω"_s},    {Function, u"1 2"_s, u"1"_s, {}},
            {Function, u"1"_s, u" 1"_s, {}},  {Function, u"1"_s, u""_s, {}},
            {Monthly, {}, u"1e39"_s, {}}};
        for (const auto& [kind, time, value, name] : cells) {
            Bench bench;
            bench.times = {time};
            bench.values = {value};
            bench.names = {name};
            QVERIFY(bench.Start(bench.Setup(kind)));
            const QStringList before = Everything(*bench.session);
            bench.messages.Expect(kWriteFailed);
            bench.SaveAs(bench.KindPath(u"x.dat"_s));
            QCOMPARE(Everything(*bench.session), before);
            QVERIFY(!QFile::exists(bench.KindPath(u"x.dat"_s)));
        }
    }

    // What cannot be saved leaves path, flags and name, and the place of the next save.
    void refusedSaveAs_data() {
        const QString folder = u"Data/Profils/Journalier/"_s;
        // What is chosen, below the program folder, and the message.
        AddRows<QStringList>({{"cancelled", {{}, {}}},
                              {"read-only", {folder + u"fixed.dat"_s, kReadOnly}},
                              {"read-only with its extension", {folder + u"fixed"_s, kReadOnly}},
                              {"read-only elsewhere", {u"fixed"_s, kReadOnly}},
                              {"a double quote", {folder + u"a\"b"_s, kWriteFailed}},
                              {"not in the code page", {folder + u"Ω"_s, kWriteFailed}},
                              {"a line break", {folder + u"a\nb"_s, kWriteFailed}},
                              {"no such folder", {u"none/x"_s, kWriteFailed}},
                              {"a folder of that name", {folder + u"sub.d"_s, kWriteFailed}}});
    }
    void refusedSaveAs() {
        QFETCH(const QStringList, row);
        const QString& chosen = row[0];
        const QString& message = row[1];
        Bench bench(Daily);
        const QString path = bench.KindPath(u"was.dat"_s);
        QDir().mkpath(bench.KindPath(u"sub.d"_s));
        const QString fixed[] = {bench.KindPath(u"fixed.dat"_s), bench.Path(u"fixed.dat"_s)};
        for (const QString& file : fixed) {
            QVERIFY(WriteAll(file, "old"));
            QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadUser));
        }
        bench.SaveAs(path);
        bench.session->EnterValue(1, u"2"_s);
        const QStringList before = Everything(*bench.session);
        if (!chosen.isEmpty() && !chosen.startsWith(u"Data/"))
            bench.messages.Expect(kElsewhere, u"Attention !"_s);
        if (!message.isEmpty())
            bench.messages.Expect(message);
        bench.dialogs.ExpectSave(chosen.isEmpty() ? QString() : bench.Path(chosen));
        bench.session->SaveAs();
        QCOMPARE(Everything(*bench.session), before);
        for (const QString& file : fixed) {
            QCOMPARE(ReadAll(file), "old");
            QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner));
        }
        QCOMPARE(bench.session->nameForCaller(), u"was"_s);
        bench.session->Save();
        QCOMPARE(bench.session->nameForCaller(), u"was"_s);
        QVERIFY(ReadAll(path).contains(bench.Values()[0].toLatin1()));
        // Nor does a plain save that fails change anything.
        bench.session->EnterValue(1, u"3"_s);
        const QStringList edited = Everything(*bench.session);
        QVERIFY(QFileInfo(path).dir().removeRecursively());
        bench.messages.Expect(kWriteFailed);
        bench.session->Save();
        QCOMPARE(Everything(*bench.session), edited);
    }

    void edition() {
        Bench bench(Annual);
        const auto enter = [&](const QString& text) { bench.session->EnterValue(2, text); };
        bench.session->EnterValue(1, u"2"_s);
        const QStringList balanced = Texts(u"1.99|0.91*11"_s);
        QCOMPARE(bench.Values(), balanced);
        bench.session->SetEdition(true);
        QVERIFY(bench.session->isEdition() && bench.session->isModified());
        bench.session->EnterColumn(Texts(u"1*12"_s), 1);
        enter(u"2"_s);
        QCOMPARE(bench.Values(), Texts(u"1|2|1*10"_s));
        bench.session->SetEdition(false);
        QVERIFY(!bench.session->isEdition());
        QCOMPARE(bench.Values(), Texts(u"0.95|1.85|0.92*10"_s));
        QVERIFY(bench.session->Undo());
        QCOMPARE(bench.Values(), Texts(u"1|2|1*10"_s));
        // Nothing to rescale or to enter: no step, and what was undone can still be redone.
        QVERIFY(bench.session->Undo() && bench.session->Undo());
        QCOMPARE(bench.Values(), balanced);
        bench.session->SetEdition(true);
        enter(u"0.91"_s);
        bench.session->SetEdition(false);
        bench.session->Adjust();
        QVERIFY(bench.session->canRedo());
        // A sum of zero cannot be scaled, whoever asks.
        bench.session->SetEdition(true);
        bench.session->EnterColumn(Texts(u"0*12"_s), 1);
        bench.session->SetEdition(false);
        QCOMPARE(bench.Values(), Texts(u"0*12"_s));
        QVERIFY(bench.session->Undo());
        QCOMPARE(bench.Values(), balanced);
        const QString path = bench.Path(u"zeros.dat"_s);
        QVERIFY(WriteAll(path, "MOIS =\nCOEFFICIENT =" + QByteArray(" 0").repeated(12)));
        bench.Open(path);
        QCOMPARE(bench.Values(), Texts(u"0.00*12"_s));
    }

    void viewOnly_data() { AddKinds(); }
    void viewOnly() {
        QFETCH(ProfileKind, row);
        Bench bench;
        const QString path = bench.Path(u"p.dat"_s);
        const QStringList threes(Describe(row).rows, u"3"_s);
        const QByteArray bytes =
            row == Function ? "AZIMUT = 1 2 3\nHAUTEUR = 1 2 3\n"
                            : WriteProfile(row, {RowLabelTexts(row), threes, threes}, "\n");
        QVERIFY(WriteAll(path, bytes));
        QVERIFY(bench.Start(bench.Setup(row, DisplayMode::View, path)));
        ProfileSession& session = *bench.session;
        ProfileTable& table = session.table();
        QVERIFY(session.isViewOnly() && session.canOpen());
        QCOMPARE(EnglishAtof(table.CellText(3, kValue)), 3.0F);  // not rescaled
        const QStringList before = Everything(session);
        for (const bool enabled :
             {session.canAdd(), session.canRemove(), session.canEditCoefficients(),
              session.canUndo(), session.canRedo(), session.canCopy(), session.canPaste(),
              session.canSave(), session.canSaveAs()})
            QVERIFY(!enabled);
        for (int column = 0; column < table.ColumnCount(); ++column) {
            const QModelIndex cell = table.index(0, column);
            QVERIFY(!table.flags(cell).testFlag(Qt::ItemIsEditable));
            QVERIFY(!table.setData(cell, u"7"_s, Qt::EditRole));
        }
        QVERIFY(!session.RemoveRows({1}) && !session.Undo() && !session.Redo());
        session.BeginDrag(1);
        session.DragTo(u"9"_s);
        session.EndDrag();
        QCOMPARE(Everything(session), before);
    }

    void dailyProfileNames() {
        Bench bench;
        for (const QString& file : {u"b.dat"_s, u"A.dat"_s, u"c.txt"_s})
            QVERIFY(WriteAll(bench.Path(u"Data/Profils/Journalier/"_s + file), kDailyFile));
        QVERIFY(bench.Start(bench.Setup(Weekly)));
        ProfileSession& session = *bench.session;
        QCOMPARE(session.dailyProfiles(), Texts(u"A|b"_s));
        session.AddDailyProfile(u"n"_s);
        session.AddDailyProfile(u"A"_s);
        session.AddDailyProfile(u"VOIR"_s);
        QCOMPARE(session.table().Choices(), Texts(u"AJOUTER|VOIR|A|b|n"_s));

        // The file names a profile that is in no folder.
        const QString path = bench.Path(u"w.dat"_s);
        QVERIFY(WriteAll(path, kWeeklyFile));
        QCOMPARE(session.ReadFile(path), ProfileFileStatus::Read);
        session.EnterName(3, u"n"_s);
        session.EnterName(3, u"n"_s);
        QVERIFY(session.Undo() && !session.canUndo());
        QCOMPARE(bench.Column(kName), Texts(u"a|b|gone|d||f|g"_s));
    }

    void drag_data() { AddKinds(); }
    void drag() {
        QFETCH(ProfileKind, row);
        Bench bench(row, u"1|2|3"_s);
        ProfileSession& session = *bench.session;
        const QStringList start = bench.Values();
        QStringList alone = start;
        alone[1] = u"2.5"_s;

        // Back to where it began, to nowhere, and no row at all: no step.
        session.BeginDrag(2);
        session.DragTo(u"5"_s);
        session.DragTo(u"2.5"_s);
        QCOMPARE(bench.Values(), alone);
        session.DragTo(start[1]);
        session.EndDrag();
        session.BeginDrag(2);
        session.EndDrag();
        session.EndDrag();
        for (const int nowhere : {0, static_cast<int>(start.size()) + 1}) {
            session.BeginDrag(nowhere);
            QVERIFY(!session.isDragging());
            session.DragTo(u"5"_s);
        }
        QVERIFY(!session.canUndo());
        QCOMPARE(bench.Values(), start);

        // Undo in the middle ends the drag and takes it back; what the mouse still does is lost.
        session.BeginDrag(3);
        session.DragTo(u"6"_s);
        QVERIFY(session.Undo() && !session.isDragging());
        session.DragTo(u"7"_s);
        session.EndDrag();
        QCOMPARE(bench.Values(), start);
        QVERIFY(session.canRedo());

        // However far it went, it is one step, and the other coefficients follow its end.
        session.BeginDrag(2);
        session.DragTo(u"5"_s);
        session.DragTo(u"2.5"_s);
        QVERIFY(session.isDragging());
        session.EndDrag();
        const QStringList dragged = bench.Values();
        QCOMPARE(dragged == alone, !Describe(row).coefficients);
        QVERIFY(session.Undo() && !session.canUndo());
        QCOMPARE(bench.Values(), start);
        QVERIFY(session.Redo());
        QCOMPARE(bench.Values(), dragged);
    }

    // A point that only passes its twins changes nothing.
    void timesOfTwins() {
        Bench bench(Function, u"1|1|1|2"_s);
        bench.session->EnterValue(4, u"9"_s);
        QVERIFY(bench.session->Undo());
        const QStringList before = Everything(*bench.session);
        bench.session->EnterTime(1, 3, u"1"_s);
        bench.session->EnterTime(3, 1, u"1"_s);
        QCOMPARE(Everything(*bench.session), before);
        bench.session->EnterTime(4, 1, u"1"_s);
        QCOMPARE(bench.Values(), Texts(u"2|1*3"_s));
        QVERIFY(bench.session->Undo());
        QCOMPARE(bench.Values(), Texts(u"1*3|2"_s));
    }

    void removeRows() {
        const std::pair<QList<int>, QString> cases[] = {
            {{2}, u"1|3|4|5"_s},   {{5, 1, 5}, u"2|3|4"_s},
            {{1, 2, 4}, u"3|5"_s}, {{0, 1, 2, 3, 6}, u"4|5"_s},
            {{1, 2, 3, 4}, {}},  // all but one
            {{0, -1, 6}, {}}};   // not there
        for (const auto& [rows, left] : cases) {
            Bench bench(Function, u"1|2|3|4|5"_s);
            bench.session->EnterTime(5, 5, u"5.0"_s);
            bench.session->EnterTime(5, 5, u"5"_s);
            bench.session->EnterValue(1, u"1.0"_s);
            bench.session->Undo();
            const QStringList before = Everything(*bench.session);
            if (left.isEmpty() && rows.contains(1))
                bench.messages.Expect(u"Deux points au moins doivent rester."_s);
            QCOMPARE(bench.session->RemoveRows(rows), !left.isEmpty());
            if (left.isEmpty()) {
                QCOMPARE(Everything(*bench.session), before);
                continue;
            }
            QCOMPARE(bench.Column(kLabel), Texts(left));
            QCOMPARE(bench.Values(), Texts(left));
            QVERIFY(!bench.session->canUndo() && !bench.session->canRedo());
            QCOMPARE(bench.session->canRemove(), Texts(left).size() > 2);
        }
    }
};

QTEST_GUILESS_MAIN(ProfileSessionTest)
#include "ProfileSessionTest.moc"
