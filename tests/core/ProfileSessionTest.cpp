#include "FileDialogScript.h"
#include "MessageScript.h"
#include "VectorFile.h"
#include "app/EnglishAtof.h"
#include "profiles/ProfileFile.h"
#include "profiles/ProfileSession.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <utility>

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

QStringList Texts(const QString& joined) {
    return joined.isEmpty() ? QStringList() : joined.split(u'|');
}

QStringList Same(qsizetype count, const QString& text) {
    return QStringList(count, text);
}

void WriteBytes(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QByteArray ReadBytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
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

// A program folder, what the caller hands over, and a session on it. Fails the running test when
// another message or file dialog came than the scripts tell.
struct Bench {
    explicit Bench(const QString& points = {}) : times(Texts(points)), values(times) {}
    explicit Bench(ProfileKind kind, const QString& points = {}) : Bench(points) {
        if (!Start(Setup(kind)))
            QTest::qFail("the session does not start", __FILE__, __LINE__);
    }
    // Some kinds change the working folder.
    ~Bench() {
        QDir::setCurrent(start_folder);
        if (!messages.Done() || !dialogs.Done())
            QTest::qFail(qPrintable(messages.Report() + u'\n' + dialogs.Report()), __FILE__,
                         __LINE__);
    }
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    SessionSetup Setup(ProfileKind kind, DisplayMode mode = DisplayMode::Edit,
                       const QString& path = {}) {
        SessionSetup setup;
        setup.kind = kind;
        setup.mode = mode;
        setup.text = path;
        setup.name = &name;
        setup.times = &times;
        setup.values = &values;
        setup.names = &names;
        setup.folders = ProfileFolders(folder.path());
        return setup;
    }
    bool Start(const SessionSetup& setup) {
        session = std::make_unique<ProfileSession>(setup);
        return session->InitialFill();
    }
    bool Open(const QString& path) {
        dialogs.ExpectOpen(path);
        return session->Open();
    }
    void SaveAs(const QString& path) {
        dialogs.ExpectSave(path);
        session->SaveAs();
    }
    QStringList Column(int column) const { return session->table().Column(column); }
    QStringList Values() const { return Column(kValue); }
    QString Path(const QString& file) const { return folder.filePath(file); }
    // In the folder of the kind, which is made.
    QString KindPath(const QString& file) const {
        const QDir kind_folder(ProfileFolders(folder.path()).KindFolder(session->kind()));
        kind_folder.mkpath(u"."_s);
        return kind_folder.filePath(file);
    }

    const QString start_folder = QDir::currentPath();
    const QTemporaryDir folder;
    QString name = u"été"_s;
    QStringList times;
    QStringList values;
    QStringList names;
    MessageScript messages;
    FileDialogScript dialogs;
    std::unique_ptr<ProfileSession> session;
};

// The rows of a test, each in the column "row".
template <typename Row>
void AddRows(std::initializer_list<std::pair<const char*, Row>> rows) {
    QTest::addColumn<Row>("row");
    for (const auto& [name, row] : rows)
        QTest::newRow(name) << row;
}

void AddKinds() {
    AddRows<ProfileKind>({{"function", Function},
                          {"annual", Annual},
                          {"monthly", Monthly},
                          {"weekly", Weekly},
                          {"daily", Daily}});
}

struct FillRow {
    int kind;
    int mode;
    QString times;
    QStringList values;
    QStringList names;
    QStringList shown;
    QStringList shown_names;
};

struct RefusedFileRow {
    ProfileKind kind;
    QByteArray bytes;
};

struct SaveRow {
    ProfileKind kind;
    QString cell;  // what all cells hold
    QString mean;  // in the question; "" when none is due
    bool yes;
    bool has_path;
};

struct SaveAsRow {
    ProfileKind kind;
    QString chosen;   // below the program folder
    QString written;  // likewise
    bool warned;
    QString name;   // of the caller
    QString shown;  // in the caption
    QString saved_name;
};

struct RefusedSaveRow {
    QString chosen;
    bool warned;
    QString message;
};

const QByteArray kWeeklyFile =
    "JOURS = 1 2 3 4 5 6 7\nCONSOMMATION = 1 2 3 4 5 6 7\n"
    "PROFIL = \"a\" \"b\" \"gone\" \"d\" \"\" \"f\" \"g\"\n";
const QByteArray kDailyFile =
    "HEURES =\nCOEFFICIENT = 2 2 2 2 2 2 2 2 2 2 2 2 2 2 2 2 2 2 2 2 2 2 2 2\n";

}  // namespace

class ProfileSessionTest : public QObject {
    Q_OBJECT

private slots:
    void titles() {
        const QStringList titles[] = {
            {u" été"_s, u" \nété"_s},
            {u"Profil Annuel : été"_s, u"Profil Annuel : été"_s},
            {u"Profil Mensuel : été"_s, u"Profil Mensuel : \nété"_s},
            {u"Profil Hebdomadaire : été"_s, u"Profil Hebdomadaire : \nété"_s},
            {u"Profil Journalier : été"_s, u"Profil Journalier : été"_s},
            {QString(), QString()}};
        for (int kind = -1; kind <= 4; ++kind) {
            const Bench bench(static_cast<ProfileKind>(kind));
            const ProfileSession& session = *bench.session;
            QCOMPARE(QStringList({session.caption(), session.chartTitle()}), titles[kind + 1]);
            QVERIFY(session.canOpen() == (kind <= 3) && session.canSaveAs() == (kind <= 3));
            QVERIFY(!session.canSave());
        }
    }

    void initialFill_data() {
        const QStringList none;
        const QStringList ones = Same(12, u"1"_s);
        AddRows<FillRow>(
            {{"function, as handed over",
              {-1, 3, u"3|1.50|x"_s, Texts(u"1e1||-0"_s), none, Texts(u"1e1||-0"_s), none}},
             {"values short", {-1, 3, u"1|2|3"_s, Texts(u"5|6"_s), none, Texts(u"5|6"_s), none}},
             {"times short", {-1, 3, u"1"_s, Texts(u"5|6"_s), none, Texts(u"5"_s), none}},
             {"function, other mode", {-1, 0, u"1"_s, Texts(u"5"_s), none, none, none}},
             {"annual, one too many",
              {0, 3, {}, Same(13, u"1.0"_s), none, Same(12, u"1.0"_s), none}},
             {"annual, two values, rescaled",
              {0, 3, {}, Texts(u"2|2"_s), none, Texts(u"1.69|1.71"_s) + Same(10, u"0.86"_s), none}},
             {"annual, nothing", {0, 3, {}, none, none, ones, none}},
             {"annual, other mode", {0, 7, {}, Same(12, u"2"_s), none, ones, none}},
             {"daily, rescaled", {3, 3, {}, Same(24, u"2"_s), none, Same(24, u"1"_s), none}},
             {"monthly, values short, names long",
              {1,
               3,
               {},
               Texts(u"7.5|8"_s),
               Same(13, u"n"_s),
               Texts(u"7.5|8"_s) + Same(10, u"1800"_s),
               Same(12, u"n"_s)}},
             {"weekly receives nothing",
              {2, 3, {}, Same(7, u"5"_s), Same(7, u"n"_s), Same(7, u"100"_s), Same(7, {})}}});
    }
    void initialFill() {
        QFETCH(FillRow, row);
        Bench bench(row.times);
        bench.values = row.values;
        bench.names = row.names;
        const auto kind = static_cast<ProfileKind>(row.kind);
        QVERIFY(bench.Start(bench.Setup(kind, static_cast<DisplayMode>(row.mode))));
        QCOMPARE(bench.Values(), row.shown);
        QCOMPARE(bench.Column(kName), row.shown_names);
        QCOMPARE(bench.Column(kLabel),
                 kind == Function ? bench.times.first(row.shown.size()) : RowLabelTexts(kind));
        QVERIFY(!bench.session->canUndo() && !bench.session->canRedo());
        QVERIFY(!bench.session->isSaved());
    }

    void nullLists_data() { AddKinds(); }
    void nullLists() {
        QFETCH(ProfileKind, row);
        Bench bench;
        SessionSetup setup = bench.Setup(row);
        setup.name = nullptr;
        setup.times = setup.values = setup.names = nullptr;
        QVERIFY(bench.Start(setup));
        QCOMPARE(bench.session->name(), QString());
        QCOMPARE(bench.session->table().RowCount(), Describe(row).rows);
        bench.SaveAs(bench.KindPath(u"x"_s));
        QCOMPARE(bench.session->path(), bench.KindPath(u"x.dat"_s));
    }

    // Every file of the vectors, opened as a user opens it.
    void files_data() { AddVectorRows("dat_read"); }
    void files() {
        QFETCH(QJsonObject, vector);
        const QJsonObject input = vector[u"input"].toObject();
        const QJsonObject expected = vector[u"expected"].toObject();
        const auto kind = static_cast<ProfileKind>(input[u"kind"].toInt());
        Bench bench;
        const QString path = bench.Path(u"file.dat"_s);
        if (!input[u"file"].isNull())
            WriteBytes(path, VectorBytes(input[u"file"]));
        for (QString message : VectorStrings(expected[u"messages"]))
            bench.messages.Expect(message.replace(input[u"path"].toString(), path));
        const bool refused = !expected[u"messages"].toArray().isEmpty();
        const bool view_only = input[u"view_only"].toBool();
        const bool stays = bench.Start(
            bench.Setup(kind, view_only ? DisplayMode::View : DisplayMode::OpenFile, path));
        QCOMPARE(stays, !refused || input[u"file"].isNull());
        QCOMPARE(bench.session->isSaved(), !refused);
        QVERIFY(!bench.session->isModified());
        if (refused)
            return;
        QStringList values = VectorStrings(expected[u"cells"]);
        if (kind == Function)
            values = VectorStrings(expected[u"values"]);
        else if (expected[u"cells"].isNull())
            values = Same(Describe(kind).rows, QString::number(Describe(kind).default_value));
        QCOMPARE(bench.Column(kLabel),
                 kind == Function ? VectorStrings(expected[u"times"]) : RowLabelTexts(kind));
        QCOMPARE(bench.Values().size(), values.size());
        for (qsizetype i = 0; i < values.size(); ++i)
            QCOMPARE(EnglishAtof(bench.Values()[i]), EnglishAtof(values[i]));
        if (Describe(kind).hasNames())
            QCOMPARE(bench.Column(kName), VectorStrings(expected[u"names"]));
        QCOMPARE(QStringList({bench.session->name(), bench.name, bench.session->path()}),
                 QStringList({u"file"_s, u"été"_s, path}));
        QVERIFY(!bench.session->canUndo());
    }

    // The path means a file as seen from the working folder of the start.
    void relativePathAtStart() {
        Bench bench;
        QDir::setCurrent(bench.folder.path());
        WriteBytes(bench.Path(u"w.dat"_s), kWeeklyFile);
        QVERIFY(QDir(bench.folder.path()).mkpath(u"Data/Profils/Semaines"_s));
        QVERIFY(bench.Start(bench.Setup(Weekly, DisplayMode::OpenFile, u"w.dat"_s)));
        QCOMPARE(bench.Values(), Texts(u"1|2|3|4|5|6|7"_s));
        QCOMPARE(QDir::current(), QDir(bench.Path(u"Data/Profils/Semaines"_s)));
    }

    void askedAtStart() {
        Bench bench;
        const QString path = bench.Path(u"jour.été.dat"_s);
        WriteBytes(path, kDailyFile);
        bench.dialogs.ExpectOpen(path);
        QVERIFY(bench.Start(bench.Setup(Daily, DisplayMode::OpenFile)));
        QCOMPARE(bench.session->caption(), u"Profil Journalier : jour.été"_s);
        const FileRequest& request = bench.dialogs.LastRequest();
        QCOMPARE(QDir(request.folder), QDir(bench.Path(u"Data/Profils/Journalier"_s)));
        QCOMPARE(request.filter, u"Fichiers Textes (*.dat);;All Files (*.*)"_s);
        QCOMPARE(request.default_suffix, u"dat"_s);
        QVERIFY(bench.Open({}));
        bench.dialogs.ExpectOpen({});
        QVERIFY(!bench.Start(bench.Setup(Daily, DisplayMode::View)));
    }

    // Only before the first file was read can a refusal end the dialog.
    void refusedAtStart() {
        Bench bench;
        const QString bad = bench.Path(u"bad.dat"_s);
        const QString missing = bench.Path(u"missing.dat"_s);
        const QString good = bench.Path(u"good.dat"_s);
        WriteBytes(bad, "MOIS = 1\nCOEFFICIENT = 1\n");
        WriteBytes(good, kDailyFile);
        bench.messages.Expect(NotOpened(missing));
        QVERIFY(bench.Start(bench.Setup(Daily, DisplayMode::OpenFile, missing)));
        QCOMPARE(bench.Values(), Same(24, u"1"_s));
        bench.messages.Expect(NotValid(bad));
        QVERIFY(!bench.Open(bad));
        QVERIFY(!bench.Open({}));
        QVERIFY(bench.Open(good));
        bench.messages.Expect(NotValid(bad));
        QVERIFY(bench.Open(bad));
    }

    void refusedFileChangesNothing_data() {
        AddRows<RefusedFileRow>(
            {{"header", {Weekly, "MOIS =\nCONSOMMATION =\n"}},
             {"values", {Weekly, "JOURS =\nCONSOMMATION = 1 2 3 4 5 6 7 8\nPROFIL =\n"}},
             {"names", {Weekly, "JOURS =\nCONSOMMATION = 1 2 3 4 5 6 7\nPROFIL = \"a\"\n"}},
             {"not there", {Weekly, {}}},
             {"daily", {Daily, "HEURES =\nCOEFFICIENT = 1 x\n"}},
             {"function", {Function, "AZIMUT = 1 2 3\nHAUTEUR = 1 2\n"}},
             {"written by the editor",
              {Function, "Value of time = 1 2\nValue of function = 1 2\n"}}});
    }
    void refusedFileChangesNothing() {
        QFETCH(RefusedFileRow, row);
        Bench bench(row.kind, u"1|2|3"_s);
        if (Describe(row.kind).coefficients)
            bench.session->SetEdition(true);
        else
            bench.session->EnterValue(2, u"9"_s);
        bench.SaveAs(bench.KindPath(u"was"_s));
        bench.session->EnterValue(1, u"4.5"_s);
        bench.session->EnterValue(2, u"5.5"_s);
        QVERIFY(bench.session->Undo());
        const QStringList before = Everything(*bench.session);
        const QString path = bench.Path(u"refused.dat"_s);
        if (!row.bytes.isEmpty())
            WriteBytes(path, row.bytes);
        bench.messages.Expect(row.bytes.isEmpty() ? NotOpened(path) : NotValid(path));
        QVERIFY(bench.Open(path));
        QCOMPARE(Everything(*bench.session), before);
        QVERIFY(bench.session->Redo());
        QCOMPARE(bench.Values()[1], u"5.5"_s);
    }

    // A value line without values leaves the column, and any file read forgets what was done
    // before.
    void emptyValueLine() {
        Bench bench(Annual);
        bench.session->SetEdition(true);
        bench.session->EnterValue(2, u"1.5"_s);
        const QStringList entered = bench.Values();
        const QString path = bench.Path(u"a.dat"_s);
        WriteBytes(path, "MOIS = 1\nCOEFFICIENT =\n");
        QVERIFY(bench.session->canUndo());
        QVERIFY(bench.session->ReadFile(path));
        QCOMPARE(bench.Values(), entered);
        QVERIFY(!bench.session->canUndo() && !bench.session->canRedo());
        QVERIFY(!bench.session->isModified() && bench.session->isSaved());
    }

    void lineEnds() {
        for (const QByteArray line_end : {"\n", "\r\n"}) {
            Bench bench(Weekly);
            const QString path = bench.Path(u"w.dat"_s);
            WriteBytes(path, QByteArray(kWeeklyFile).replace("\n", line_end));
            QVERIFY(bench.session->ReadFile(path));
            bench.session->EnterValue(1, u"10"_s);
            bench.session->Save();
            const QByteArray written =
                "JOURS = Lundi Mardi Mercredi Jeudi Vendredi Samedi Dimanche" + line_end +
                "CONSOMMATION = 10 2 3 4 5 6 7" + line_end +
                "PROFIL = \"a\" \"b\" \"gone\" \"d\" \"\" \"f\" \"g\"" + line_end;
            QCOMPARE(ReadBytes(path), written);
            bench.SaveAs(bench.Path(u"copy"_s));
            QCOMPARE(ReadBytes(bench.Path(u"copy.dat"_s)), written);
        }
    }

    void save_data() {
        AddRows<SaveRow>({{"right", {Annual, u"1"_s, {}, false, true}},
                          {"wrong, yes", {Annual, u"1.1"_s, u"1.1000"_s, true, true}},
                          {"wrong, no", {Annual, u"1.1"_s, u"1.1000"_s, false, true}},
                          {"right, no path", {Annual, u"1"_s, {}, false, false}},
                          {"wrong, yes, no path", {Annual, u"1.1"_s, u"1.1000"_s, true, false}},
                          {"wrong, no, no path", {Annual, u"1.1"_s, u"1.1000"_s, false, false}},
                          {"rounds to the right sum", {Daily, u"0.99999"_s, {}, false, true}},
                          {"daily, yes", {Daily, u"0.5"_s, u"0.5000"_s, true, true}},
                          {"weekly", {Weekly, u"3"_s, {}, false, true}},
                          {"weekly, no path", {Weekly, u"3"_s, {}, false, false}}});
    }
    void save() {
        QFETCH(SaveRow, row);
        Bench bench(row.kind);
        const QString path = bench.KindPath(u"p.dat"_s);
        if (row.has_path)
            bench.SaveAs(path);
        const QByteArray old_file = ReadBytes(path);
        if (Describe(row.kind).coefficients)
            bench.session->SetEdition(true);
        const QStringList column = Same(Describe(row.kind).rows, row.cell);
        bench.session->EnterColumn(column, 1);
        const bool asked = !row.mean.isEmpty();
        if (asked)
            bench.messages.ExpectQuestion(MeanQuestion(row.mean), {}, row.yes);
        const bool goes_on = !asked || row.yes;
        if (goes_on && !row.has_path)
            bench.messages.Expect(kNoPath);
        QCOMPARE(bench.session->isSaved(), row.has_path);
        bench.session->Save();
        QVERIFY2(bench.messages.Done(), qPrintable(bench.messages.Report()));

        const bool written = goes_on && row.has_path;
        const QStringList after = goes_on && asked ? Same(column.size(), u"1"_s) : column;
        QCOMPARE(bench.Values(), after);
        QCOMPARE(bench.session->isModified(), !written);
        QCOMPARE(bench.session->isSaved(), row.has_path);
        if (written)
            QVERIFY(ReadBytes(path).contains(" = " + after.join(u' ').toLatin1() + "\n"));
        else
            QCOMPARE(ReadBytes(path), old_file);
        // The adjustment is a step of its own.
        if (after != column) {
            QVERIFY(bench.session->Undo());
            QCOMPARE(bench.Values(), column);
        }
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
        const QString ete = u"été"_s;
        const QString daily = u"Data/Profils/Journalier/"_s;
        AddRows<SaveAsRow>(
            {{"function",
              {Function, u"Data/Masques/a"_s, u"Data/Masques/a.dat"_s, false, ete, ete, u"a"_s}},
             {"function elsewhere", {Function, u"a.txt"_s, u"a.txt"_s, false, ete, ete, u"a"_s}},
             {"annual",
              {Annual, u"Data/Profils/Annuel/a.b"_s, u"Data/Profils/Annuel/a.b"_s, false, ete, ete,
               u"a"_s}},
             {"annual elsewhere", {Annual, u"d.e/a"_s, u"d.e/a.dat"_s, true, ete, ete, {}}},
             {"monthly elsewhere", {Monthly, u"a.dat"_s, u"a.dat"_s, false, ete, ete, u"a"_s}},
             {"weekly elsewhere",
              {Weekly, u"a b"_s, u"a b.dat"_s, false, u"a b"_s, u"a b"_s, u"a b"_s}},
             {"daily",
              {Daily, daily + u"été 2"_s, daily + u"été 2.dat"_s, false, u"été 2"_s, u"été 2"_s,
               u"été 2"_s}},
             {"daily elsewhere",
              {Daily,
               u"Data/Profils/Annuel/a"_s,
               u"Data/Profils/Annuel/a.dat"_s,
               true,
               u"BAD_PATH"_s,
               u"a"_s,
               {}}},
             {"daily below its folder",
              {Daily, daily + u"b/a"_s, daily + u"b/a.dat"_s, true, u"BAD_PATH"_s, u"a"_s, {}}},
             {"daily without a title",
              {Daily, daily + u".dat"_s, daily + u".dat"_s, false, ete, ete, {}}}});
    }
    void saveAs() {
        QFETCH(SaveAsRow, row);
        Bench bench(row.kind, u"1|2"_s);
        const QString path = bench.Path(row.written);
        QDir().mkpath(QFileInfo(path).path());
        if (row.warned)
            bench.messages.Expect(kElsewhere, u"Attention !"_s);
        bench.SaveAs(bench.Path(row.chosen));
        QVERIFY2(bench.messages.Done(), qPrintable(bench.messages.Report()));
        QCOMPARE(QDir(bench.dialogs.LastRequest().folder), QFileInfo(bench.KindPath(u"x"_s)).dir());
        QVERIFY(QFile::exists(path));
        QCOMPARE(bench.session->path(), path);
        QCOMPARE(bench.session->caption(),
                 Describe(row.kind).title_prefix.toString().remove(u'\n') + row.shown);
        // A plain save goes the same way.
        for (int saves = 0; saves < 2; ++saves) {
            QCOMPARE(bench.name, row.name);
            QCOMPARE(bench.session->savedName(), row.saved_name);
            QVERIFY(bench.session->isSaved() && !bench.session->isModified());
            QVERIFY(bench.session->canSave());
            bench.session->SetModified();
            bench.session->Save();
        }
        // The folder of the kind is left and entered again.
        if (row.name == u"BAD_PATH"_s) {
            bench.SaveAs(bench.KindPath(u"in"_s));
            QCOMPARE(bench.name, u"in"_s);
            bench.session->Save();
            QCOMPARE(bench.name, u"in"_s);
        }
    }

    // What cannot be saved leaves path, flags and name, and the place of the next save.
    void refusedSaveAs_data() {
        const QString folder = u"Data/Profils/Journalier/"_s;
        AddRows<RefusedSaveRow>(
            {{"cancelled", {{}, false, {}}},
             {"read-only", {folder + u"fixed.dat"_s, false, kReadOnly}},
             {"read-only with its extension", {folder + u"fixed"_s, false, kReadOnly}},
             {"read-only elsewhere", {u"fixed"_s, true, kReadOnly}},
             {"a double quote", {folder + u"a\"b"_s, false, kWriteFailed}},
             {"a line break", {folder + u"a\nb"_s, false, kWriteFailed}},
             {"no such folder", {u"none/x"_s, true, kWriteFailed}},
             {"a folder of that name", {folder + u"sub.d"_s, false, kWriteFailed}}});
    }
    void refusedSaveAs() {
        QFETCH(RefusedSaveRow, row);
        Bench bench(Daily);
        const QString path = bench.KindPath(u"was.dat"_s);
        QDir().mkpath(bench.KindPath(u"sub.d"_s));
        const QString fixed[] = {bench.KindPath(u"fixed.dat"_s), bench.Path(u"fixed.dat"_s)};
        for (const QString& file : fixed) {
            WriteBytes(file, "old");
            QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadUser));
        }
        bench.SaveAs(path);
        bench.session->EnterValue(1, u"2"_s);
        const QStringList before = Everything(*bench.session);
        if (row.warned)
            bench.messages.Expect(kElsewhere, u"Attention !"_s);
        if (!row.message.isEmpty())
            bench.messages.Expect(row.message);
        bench.SaveAs(row.chosen.isEmpty() ? QString() : bench.Path(row.chosen));
        QCOMPARE(Everything(*bench.session), before);
        for (const QString& file : fixed) {
            QCOMPARE(ReadBytes(file), "old");
            QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner));
        }
        QCOMPARE(bench.name, u"was"_s);
        bench.session->Save();
        QCOMPARE(bench.name, u"was"_s);
        QVERIFY(ReadBytes(path).contains(bench.Values()[0].toLatin1()));
    }

    void failedSave() {
        Bench bench(Weekly);
        QVERIFY(QDir(bench.folder.path()).mkpath(u"gone"_s));
        bench.SaveAs(bench.Path(u"gone/w"_s));
        bench.session->EnterValue(1, u"2"_s);
        const QStringList before = Everything(*bench.session);
        QVERIFY(QDir(bench.Path(u"gone"_s)).removeRecursively());
        bench.messages.Expect(kWriteFailed);
        bench.session->Save();
        QCOMPARE(Everything(*bench.session), before);
    }

    void edition() {
        Bench bench(Annual);
        bench.session->EnterValue(1, u"2"_s);
        const QStringList balanced = QStringList{u"1.99"_s} + Same(11, u"0.91"_s);
        QCOMPARE(bench.Values(), balanced);
        bench.session->SetEdition(true);
        QVERIFY(bench.session->isEdition() && bench.session->isModified());
        bench.session->EnterColumn(Same(12, u"1"_s), 1);
        bench.session->EnterValue(2, u"2"_s);
        QCOMPARE(bench.Values().mid(0, 3), Texts(u"1|2|1"_s));
        bench.session->SetEdition(false);
        QVERIFY(!bench.session->isEdition());
        QCOMPARE(bench.Values(), Texts(u"0.95|1.85"_s) + Same(10, u"0.92"_s));
        QVERIFY(bench.session->Undo());
        QCOMPARE(bench.Values().mid(0, 3), Texts(u"1|2|1"_s));
        // Nothing to rescale or to enter: no step, and what was undone can still be redone.
        QVERIFY(bench.session->Undo() && bench.session->Undo());
        QCOMPARE(bench.Values(), balanced);
        bench.session->SetEdition(true);
        bench.session->EnterValue(2, u"0.91"_s);
        bench.session->SetEdition(false);
        bench.session->Adjust();
        QVERIFY(bench.session->canRedo());
        // A sum of zero cannot be scaled.
        bench.session->SetEdition(true);
        bench.session->EnterColumn(Same(12, u"0"_s), 1);
        QVERIFY(!bench.session->canRedo());
        bench.session->Adjust();
        QCOMPARE(bench.Values(), Same(12, u"nan"_s));
        QVERIFY(bench.session->Undo());
        QCOMPARE(bench.Values(), Same(12, u"0"_s));
    }

    void viewOnly_data() { AddKinds(); }
    void viewOnly() {
        QFETCH(ProfileKind, row);
        Bench bench;
        const QString path = bench.Path(u"p.dat"_s);
        WriteBytes(path, "AZIMUT = 1 2 3\nHAUTEUR = 1 2 3\n");
        if (row != Function) {
            ProfileContent content;
            content.labels = RowLabelTexts(row);
            content.values = content.names = Same(Describe(row).rows, u"3"_s);
            WriteBytes(path, WriteProfile(row, content, "\n"));
        }
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

    void movedRow() {
        Bench bench;
        bench.times = Texts(u"0|10.0|20|30"_s);
        bench.values = Texts(u"a|1e1|c|d"_s);
        QVERIFY(bench.Start(bench.Setup(Function)));
        ProfileSession& session = *bench.session;
        const auto points = [&] { return bench.Column(kLabel) + bench.Values(); };
        session.EnterTime(1, 3, u"25"_s);
        QCOMPARE(points(), Texts(u"10|20|25|30|10|c|a|d"_s));
        session.EnterTime(3, 3, u"25"_s);
        session.EnterTime(3, 3, u"26"_s);
        QVERIFY(session.Undo());
        QCOMPARE(points(), Texts(u"10|20|25|30|10|c|a|d"_s));
        QVERIFY(session.Undo());
        QCOMPARE(points(), Texts(u"0|10|20|30|a|10|c|d"_s));
        QVERIFY(!session.canUndo() && session.Redo() && session.Redo());
        QCOMPARE(points(), Texts(u"10|20|26|30|10|c|a|d"_s));
    }

    void dailyProfileNames() {
        Bench bench;
        for (const QString& file : {u"b.dat"_s, u"A.dat"_s, u"c.txt"_s})
            WriteBytes(bench.Path(u"Data/Profils/Journalier/"_s + file), kDailyFile);
        QVERIFY(bench.Start(bench.Setup(Weekly)));
        ProfileSession& session = *bench.session;
        QCOMPARE(session.dailyProfiles(), Texts(u"A|b"_s));
        session.AddDailyProfile(u"n"_s);
        session.AddDailyProfile(u"A"_s);
        QCOMPARE(session.table().Choices(), Texts(u"AJOUTER|VOIR|A|b|n"_s));

        // The file names a profile that is in no folder.
        const QString path = bench.Path(u"w.dat"_s);
        WriteBytes(path, kWeeklyFile);
        QVERIFY(session.ReadFile(path));
        session.EnterName(3, u"n"_s);
        session.EnterValue(3, u"8"_s);
        session.EnterName(3, u"n"_s);
        QVERIFY(session.Undo() && session.Undo());
        QCOMPARE(bench.Column(kName), Texts(u"a|b|gone|d||f|g"_s));
        QCOMPARE(bench.Values(), Texts(u"1|2|3|4|5|6|7"_s));
        QVERIFY(!session.canUndo() && session.Redo());
        QCOMPARE(bench.Column(kName)[2], u"n"_s);
    }

    void drag_data() { AddKinds(); }
    void drag() {
        QFETCH(ProfileKind, row);
        Bench bench(row, u"1|2|3"_s);
        ProfileSession& session = *bench.session;
        const QStringList start = bench.Values();

        // Back to where it began, to nowhere, and no row at all: no step.
        session.BeginDrag(2);
        session.DragTo(u"5"_s);
        QCOMPARE(bench.Values()[1], u"5"_s);
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

        // However far it went, it is one step.
        session.BeginDrag(2);
        for (const QString& text : {u"5"_s, u"3"_s, u"2.5"_s})
            session.DragTo(text);
        QVERIFY(session.isDragging() && !session.canUndo());
        session.EndDrag();
        const QStringList dragged = bench.Values();
        QStringList alone = start;
        alone[1] = u"2.5"_s;
        QCOMPARE(dragged == alone, !Describe(row).coefficients);
        QVERIFY(session.Undo());
        QCOMPARE(bench.Values(), start);
        QVERIFY(session.Redo());
        QCOMPARE(bench.Values(), dragged);

        // Undo in the middle ends the drag and takes it back; what the mouse still does is lost.
        session.BeginDrag(3);
        session.DragTo(u"6"_s);
        QVERIFY(session.Undo() && !session.isDragging());
        QCOMPARE(bench.Values(), dragged);
        session.DragTo(u"7"_s);
        session.EndDrag();
        QCOMPARE(bench.Values(), dragged);
        QVERIFY(session.canRedo());
    }

    void removeRows_data() {
        QTest::addColumn<QString>("left");  // "" when nothing goes
        AddRows<QList<int>>({});
        const std::tuple<const char*, QString, QList<int>> rows[] = {
            {"one", u"1|3|4|5"_s, {2}},
            {"apart, twice, in any order", u"2|3|4"_s, {5, 1, 5}},
            {"all but two", u"3|5"_s, {1, 2, 4}},
            {"all but one", {}, {1, 2, 3, 4}},
            {"not there", {}, {0, -1, 6}},
            {"some not there", u"4|5"_s, {0, 1, 2, 3, 6}}};
        for (const auto& [name, left, row] : rows)
            QTest::newRow(name) << left << row;
    }
    void removeRows() {
        QFETCH(QList<int>, row);
        QFETCH(QString, left);
        Bench bench(Function, u"1|2|3|4|5"_s);
        bench.session->EnterTime(5, 5, u"5.0"_s);
        bench.session->EnterTime(5, 5, u"5"_s);
        bench.session->EnterValue(1, u"1.0"_s);
        bench.session->Undo();
        const QStringList before = Everything(*bench.session);
        QCOMPARE(bench.session->RemoveRows(row), !left.isEmpty());
        if (left.isEmpty()) {
            QCOMPARE(Everything(*bench.session), before);
            return;
        }
        QCOMPARE(bench.Column(kLabel), Texts(left));
        QCOMPARE(bench.Values(), Texts(left));
        QVERIFY(!bench.session->canUndo() && !bench.session->canRedo());
        QCOMPARE(bench.session->canRemove(), Texts(left).size() > 2);
    }
};

QTEST_GUILESS_MAIN(ProfileSessionTest)
#include "ProfileSessionTest.moc"
