#include "FileDialogScript.h"
#include "MessageScript.h"
#include "VectorFile.h"
#include "app/Cp1252.h"
#include "app/EnglishAtof.h"
#include "profiles/ProfileFile.h"
#include "profiles/ProfileSession.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int kLabel = ProfileTable::kLabelColumn;
constexpr int kValue = ProfileTable::kValueColumn;
constexpr int kName = ProfileTable::kNameColumn;

const QString kWriteFailed = u"Ecriture impossible !"_s;
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

QStringList Same(int count, const QString& text) {
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

// A program folder, what the caller hands over, and a session on it.
struct Bench {
    QTemporaryDir folder;
    QString name = u"été"_s;
    QStringList times;
    QStringList values;
    QStringList names;
    MessageScript messages;
    FileDialogScript dialogs;
    std::unique_ptr<ProfileSession> session;

    SessionSetup Setup(ProfileKind kind, DisplayMode mode = DisplayMode::Edit) {
        SessionSetup setup;
        setup.kind = kind;
        setup.mode = mode;
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

    bool Start(ProfileKind kind) { return Start(Setup(kind)); }

    QStringList Column(int column) const { return session->table().Column(column); }
    QStringList Values() const { return Column(kValue); }

    QString KindPath(const QString& file) const {
        const QString kind_folder = ProfileFolders(folder.path()).KindFolder(session->kind());
        return QDir(kind_folder).filePath(file);
    }

    bool Done() const { return messages.Done() && dialogs.Done(); }
    QString Report() const { return messages.Report() + u'\n' + dialogs.Report(); }
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
    // The monthly and weekly kinds change the working folder.
    void cleanup() { QDir::setCurrent(m_start_folder); }

    void titles_data() {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("title");
        QTest::newRow("function") << -1 << " été"
                                  << " \nété";
        QTest::newRow("annual") << 0 << "Profil Annuel : été"
                                << "Profil Annuel : été";
        QTest::newRow("monthly") << 1 << "Profil Mensuel : été"
                                 << "Profil Mensuel : \nété";
        QTest::newRow("weekly") << 2 << "Profil Hebdomadaire : été"
                                << "Profil Hebdomadaire : \nété";
        QTest::newRow("daily") << 3 << "Profil Journalier : été"
                               << "Profil Journalier : été";
        QTest::newRow("other") << 4 << ""
                               << "";
        QTest::newRow("below") << -2 << ""
                               << "";
    }
    void titles() {
        QFETCH(int, kind);
        Bench bench;
        QVERIFY(bench.Start(static_cast<ProfileKind>(kind)));
        QTEST(bench.session->caption(), "caption");
        QTEST(bench.session->chartTitle(), "title");
        QCOMPARE(bench.session->canOpen(), kind >= -1 && kind <= 3);
        QCOMPARE(bench.session->canSaveAs(), kind >= -1 && kind <= 3);
        QVERIFY(!bench.session->canSave());
        QCOMPARE(bench.name, u"été"_s);
        SessionSetup nameless = bench.Setup(static_cast<ProfileKind>(kind));
        nameless.name = nullptr;
        QVERIFY(bench.Start(nameless));
        QCOMPARE(bench.session->name(), QString());
    }

    void initialFill_data() {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QStringList>("times");
        QTest::addColumn<QStringList>("values");
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QStringList>("shown");
        QTest::addColumn<QStringList>("shown_names");
        const QStringList none;
        const QStringList ones = Same(12, u"1"_s);
        QTest::newRow("function, as handed over")
            << -1 << 3 << Texts(u"3|1.50|x"_s) << Texts(u"1e1||-0"_s) << none << Texts(u"1e1||-0"_s)
            << none;
        QTest::newRow("function, values short")
            << -1 << 3 << Texts(u"1|2|3"_s) << Texts(u"5|6"_s) << none << Texts(u"5|6"_s) << none;
        QTest::newRow("function, times short")
            << -1 << 3 << Texts(u"1"_s) << Texts(u"5|6"_s) << none << Texts(u"5"_s) << none;
        QTest::newRow("function, nothing") << -1 << 3 << none << none << none << none << none;
        QTest::newRow("function, other mode")
            << -1 << 0 << Texts(u"1"_s) << Texts(u"5"_s) << none << none << none;
        QTest::newRow("annual, one too many")
            << 0 << 3 << none << Same(13, u"1.0"_s) << none << Same(12, u"1.0"_s) << none;
        QTest::newRow("annual, two values, rescaled")
            << 0 << 3 << none << Same(2, u"2"_s) << none
            << QStringList{u"1.69"_s, u"1.71"_s} + Same(10, u"0.86"_s) << none;
        QTest::newRow("annual, nothing") << 0 << 3 << none << none << none << ones << none;
        QTest::newRow("annual, other mode")
            << 0 << 7 << none << Same(12, u"2"_s) << none << ones << none;
        QTest::newRow("daily, rescaled")
            << 3 << 3 << none << Same(24, u"2"_s) << none << Same(24, u"1"_s) << none;
        QTest::newRow("monthly, values short, names long")
            << 1 << 3 << none << Texts(u"7.5|8"_s) << Same(13, u"n"_s)
            << QStringList{u"7.5"_s, u"8"_s} + Same(10, u"1800"_s) << Same(12, u"n"_s);
        QTest::newRow("weekly receives nothing")
            << 2 << 3 << none << Same(7, u"5"_s) << Same(7, u"n"_s) << Same(7, u"100"_s)
            << Same(7, QString());
    }
    void initialFill() {
        QFETCH(int, kind);
        QFETCH(int, mode);
        QFETCH(QStringList, times);
        QFETCH(QStringList, values);
        QFETCH(QStringList, names);
        QFETCH(QStringList, shown);
        Bench bench;
        bench.times = times;
        bench.values = values;
        bench.names = names;
        const auto profile_kind = static_cast<ProfileKind>(kind);
        QVERIFY(bench.Start(bench.Setup(profile_kind, static_cast<DisplayMode>(mode))));
        QCOMPARE(bench.Values(), shown);
        QTEST(bench.Column(kName), "shown_names");
        if (profile_kind == ProfileKind::Function)
            QCOMPARE(bench.Column(kLabel), bench.times.first(shown.size()));
        else
            QCOMPARE(bench.Column(kLabel), RowLabelTexts(profile_kind));
        QVERIFY(!bench.session->canUndo() && !bench.session->canRedo());
        QVERIFY(!bench.session->isSaved());
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
    }

    void nullLists_data() { kinds_data(); }
    void nullLists() {
        QFETCH(ProfileKind, kind);
        Bench bench;
        SessionSetup setup = bench.Setup(kind);
        setup.name = nullptr;
        setup.times = setup.values = setup.names = nullptr;
        QVERIFY(bench.Start(setup));
        QCOMPARE(bench.session->table().RowCount(), Describe(kind).rows);
        bench.dialogs.ExpectSave(bench.KindPath(u"x"_s));
        QDir().mkpath(QFileInfo(bench.KindPath(u"x"_s)).path());
        bench.session->SaveAs();
        QCOMPARE(bench.session->path(), bench.KindPath(u"x.dat"_s));
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
    }

    // Every file of the vectors, opened as a user opens it.
    void files_data() { AddVectorRows("dat_read"); }
    void files() {
        QFETCH(QJsonObject, vector);
        const QJsonObject input = vector[u"input"].toObject();
        const QJsonObject expected = vector[u"expected"].toObject();
        const auto kind = static_cast<ProfileKind>(input[u"kind"].toInt());
        const bool view_only = input[u"view_only"].toBool();
        Bench bench;
        const QString path = bench.folder.filePath(u"file.dat"_s);
        if (!input[u"file"].isNull())
            WriteBytes(path, VectorBytes(input[u"file"]));
        for (QString message : VectorStrings(expected[u"messages"]))
            bench.messages.Expect(message.replace(input[u"path"].toString(), path));
        SessionSetup setup =
            bench.Setup(kind, view_only ? DisplayMode::View : DisplayMode::OpenFile);
        setup.text = path;
        const bool refused = !expected[u"messages"].toArray().isEmpty();
        const bool stays = bench.Start(setup);
        QCOMPARE(stays, !refused || input[u"file"].isNull());
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
        QCOMPARE(bench.session->isSaved(), !refused);
        QVERIFY(!bench.session->isModified());
        if (refused)
            return;
        QStringList values = VectorStrings(expected[u"cells"]);
        if (kind == ProfileKind::Function) {
            values = VectorStrings(expected[u"values"]);
            QCOMPARE(bench.Column(kLabel), VectorStrings(expected[u"times"]));
        } else {
            QCOMPARE(bench.Column(kLabel), RowLabelTexts(kind));
        }
        if (expected[u"cells"].isNull() && kind != ProfileKind::Function)
            values = Same(Describe(kind).rows, QString::number(Describe(kind).default_value));
        QCOMPARE(bench.Values().size(), values.size());
        for (qsizetype i = 0; i < values.size(); ++i)
            QCOMPARE(EnglishAtof(bench.Values()[i]), EnglishAtof(values[i]));
        if (Describe(kind).hasNames())
            QCOMPARE(bench.Column(kName), VectorStrings(expected[u"names"]));
        QCOMPARE(bench.session->name(), u"file"_s);
        QCOMPARE(bench.name, u"été"_s);
        QCOMPARE(bench.session->path(), path);
        QVERIFY(!bench.session->canUndo());
    }

    // The path means a file as seen from the working folder of the start.
    void relativePathAtStart() {
        Bench bench;
        QDir::setCurrent(bench.folder.path());
        WriteBytes(bench.folder.filePath(u"w.dat"_s), kWeeklyFile);
        QVERIFY(QDir(bench.folder.path()).mkpath(u"Data/Profils/Semaines"_s));
        SessionSetup setup = bench.Setup(ProfileKind::Weekly, DisplayMode::OpenFile);
        setup.text = u"w.dat"_s;
        QVERIFY(bench.Start(setup));
        QCOMPARE(bench.Values(), Texts(u"1|2|3|4|5|6|7"_s));
        QCOMPARE(QDir::current(), QDir(bench.folder.filePath(u"Data/Profils/Semaines"_s)));
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
    }

    void askedAtStart() {
        Bench bench;
        const QString path = bench.folder.filePath(u"jour.été.dat"_s);
        WriteBytes(path, kDailyFile);
        bench.dialogs.ExpectOpen(path);
        QVERIFY(bench.Start(bench.Setup(ProfileKind::Daily, DisplayMode::OpenFile)));
        QCOMPARE(bench.session->caption(), u"Profil Journalier : jour.été"_s);
        const FileRequest& request = bench.dialogs.LastRequest();
        QCOMPARE(QDir(request.folder), QDir(bench.folder.filePath(u"Data/Profils/Journalier"_s)));
        QCOMPARE(request.filter, u"Fichiers Textes (*.dat);;All Files (*.*)"_s);
        QCOMPARE(request.default_suffix, u"dat"_s);

        bench.dialogs.ExpectOpen({});
        QVERIFY(bench.session->Open());
        bench.dialogs.ExpectOpen({});
        QVERIFY(!bench.Start(bench.Setup(ProfileKind::Daily, DisplayMode::View)));
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
    }

    // Only before the first file was read can a refusal end the dialog.
    void refusedAtStart() {
        Bench bench;
        const QString bad = bench.folder.filePath(u"bad.dat"_s);
        const QString missing = bench.folder.filePath(u"missing.dat"_s);
        const QString good = bench.folder.filePath(u"good.dat"_s);
        WriteBytes(bad, "MOIS = 1\nCOEFFICIENT = 1\n");
        WriteBytes(good, kDailyFile);
        SessionSetup setup = bench.Setup(ProfileKind::Daily, DisplayMode::OpenFile);
        setup.text = missing;
        bench.messages.Expect(NotOpened(missing));
        QVERIFY(bench.Start(setup));
        QCOMPARE(bench.Values(), Same(24, u"1"_s));
        bench.dialogs.ExpectOpen(bad);
        bench.messages.Expect(NotValid(bad));
        QVERIFY(!bench.session->Open());
        bench.dialogs.ExpectOpen({});
        QVERIFY(!bench.session->Open());
        bench.dialogs.ExpectOpen(good);
        QVERIFY(bench.session->Open());
        bench.dialogs.ExpectOpen(bad);
        bench.messages.Expect(NotValid(bad));
        QVERIFY(bench.session->Open());
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
    }

    void refusedFileChangesNothing_data() {
        QTest::addColumn<ProfileKind>("kind");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("header") << ProfileKind::Weekly << QByteArray("MOIS =\nCONSOMMATION =\n");
        QTest::newRow("values") << ProfileKind::Weekly
                                << QByteArray(
                                       "JOURS =\nCONSOMMATION = 1 2 3 4 5 6 7 8\nPROFIL =\n");
        QTest::newRow("names") << ProfileKind::Weekly
                               << QByteArray(
                                      "JOURS =\nCONSOMMATION = 1 2 3 4 5 6 7\nPROFIL = \"a\"\n");
        QTest::newRow("not there") << ProfileKind::Weekly << QByteArray();
        QTest::newRow("daily") << ProfileKind::Daily << QByteArray("HEURES =\nCOEFFICIENT = 1 x\n");
        QTest::newRow("function") << ProfileKind::Function
                                  << QByteArray("AZIMUT = 1 2 3\nHAUTEUR = 1 2\n");
        QTest::newRow("written by the editor")
            << ProfileKind::Function
            << QByteArray("Value of time = 1 2\nValue of function = 1 2\n");
    }
    void refusedFileChangesNothing() {
        QFETCH(ProfileKind, kind);
        QFETCH(QByteArray, bytes);
        Bench bench;
        bench.times = bench.values = Texts(u"1|2|3"_s);
        QVERIFY(bench.Start(kind));
        QDir().mkpath(QFileInfo(bench.KindPath(u"x"_s)).path());
        bench.dialogs.ExpectSave(bench.KindPath(u"was"_s));
        if (Describe(kind).coefficients)
            bench.session->SetEdition(true);
        else
            bench.session->EnterValue(2, u"9"_s);
        bench.session->SaveAs();
        bench.session->EnterValue(1, u"4.5"_s);
        bench.session->EnterValue(2, u"5.5"_s);
        QVERIFY(bench.session->Undo());
        const QStringList before = Everything(*bench.session);
        const QString path = bench.folder.filePath(u"refused.dat"_s);
        if (!bytes.isEmpty())
            WriteBytes(path, bytes);
        bench.messages.Expect(bytes.isEmpty() ? NotOpened(path) : NotValid(path));
        bench.dialogs.ExpectOpen(path);
        QVERIFY(bench.session->Open());
        QCOMPARE(Everything(*bench.session), before);
        QVERIFY(bench.session->Redo());
        QCOMPARE(bench.Values()[1], u"5.5"_s);
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
    }

    void reading() {
        Bench bench;
        QVERIFY(bench.Start(ProfileKind::Daily));
        bench.session->EnterValue(1, u"3"_s);
        const QString path = bench.folder.filePath(u"jour.dat"_s);
        WriteBytes(path, kDailyFile);
        QVERIFY(bench.session->ReadFile(path));
        QCOMPARE(bench.Values(), Same(24, u"1"_s));
        QVERIFY(bench.session->isSaved() && !bench.session->isModified());
        QVERIFY(bench.session->canSave() && !bench.session->canUndo());
        // Line 2 may be empty.
        bench.session->EnterValue(1, u"3"_s);
        const QStringList before = bench.Values();
        WriteBytes(path, "HEURES =\nCOEFFICIENT =\n");
        QVERIFY(bench.session->ReadFile(path));
        QCOMPARE(bench.Values(), before);
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
    }

    void lineEnds_data() {
        QTest::addColumn<QByteArray>("line_end");
        QTest::newRow("LF") << QByteArray("\n");
        QTest::newRow("CR LF") << QByteArray("\r\n");
    }
    void lineEnds() {
        QFETCH(QByteArray, line_end);
        Bench bench;
        QVERIFY(bench.Start(ProfileKind::Weekly));
        const QString path = bench.folder.filePath(u"w.dat"_s);
        WriteBytes(path, QByteArray(kWeeklyFile).replace("\n", line_end));
        QVERIFY(bench.session->ReadFile(path));
        bench.session->EnterValue(1, u"10"_s);
        bench.session->Save();
        const QByteArray written = "JOURS = Lundi Mardi Mercredi Jeudi Vendredi Samedi Dimanche" +
                                   line_end + "CONSOMMATION = 10 2 3 4 5 6 7" + line_end +
                                   "PROFIL = \"a\" \"b\" \"gone\" \"d\" \"\" \"f\" \"g\"" +
                                   line_end;
        QCOMPARE(ReadBytes(path), written);
        bench.dialogs.ExpectSave(bench.folder.filePath(u"copy"_s));
        bench.session->SaveAs();
        QCOMPARE(ReadBytes(bench.folder.filePath(u"copy.dat"_s)), written);
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
    }

    void save_data() {
        QTest::addColumn<ProfileKind>("kind");
        QTest::addColumn<QString>("cell");  // what all cells hold
        QTest::addColumn<QString>("mean");  // in the question; "" when none is due
        QTest::addColumn<bool>("yes");
        QTest::addColumn<bool>("has_path");
        QTest::newRow("right") << ProfileKind::Annual << "1"
                               << "" << false << true;
        QTest::newRow("wrong, yes") << ProfileKind::Annual << "1.1"
                                    << "1.1000" << true << true;
        QTest::newRow("wrong, no") << ProfileKind::Annual << "1.1"
                                   << "1.1000" << false << true;
        QTest::newRow("right, no path") << ProfileKind::Annual << "1"
                                        << "" << false << false;
        QTest::newRow("wrong, yes, no path") << ProfileKind::Annual << "1.1"
                                             << "1.1000" << true << false;
        QTest::newRow("wrong, no, no path") << ProfileKind::Annual << "1.1"
                                            << "1.1000" << false << false;
        QTest::newRow("rounds to the right sum") << ProfileKind::Daily << "0.99999"
                                                 << "" << false << true;
        QTest::newRow("daily, yes") << ProfileKind::Daily << "0.5"
                                    << "0.5000" << true << true;
        QTest::newRow("weekly") << ProfileKind::Weekly << "3"
                                << "" << false << true;
        QTest::newRow("weekly, no path") << ProfileKind::Weekly << "3"
                                         << "" << false << false;
    }
    void save() {
        QFETCH(ProfileKind, kind);
        QFETCH(QString, cell);
        QFETCH(QString, mean);
        QFETCH(bool, yes);
        QFETCH(bool, has_path);
        Bench bench;
        QVERIFY(bench.Start(kind));
        const QString path = bench.KindPath(u"p.dat"_s);
        QDir().mkpath(QFileInfo(path).path());
        if (has_path) {
            bench.dialogs.ExpectSave(path);
            bench.session->SaveAs();
        }
        const QByteArray old_file = ReadBytes(path);
        if (Describe(kind).coefficients)
            bench.session->SetEdition(true);
        const QStringList column = Same(Describe(kind).rows, cell);
        bench.session->EnterColumn(column, 1);
        if (!mean.isEmpty())
            bench.messages.ExpectQuestion(MeanQuestion(mean), {}, yes);
        const bool goes_on = mean.isEmpty() || yes;
        if (goes_on && !has_path)
            bench.messages.Expect(kNoPath);
        QCOMPARE(bench.session->isSaved(), has_path);
        bench.session->Save();
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));

        const bool written = goes_on && has_path;
        const QStringList after =
            goes_on && !mean.isEmpty() ? Same(Describe(kind).rows, u"1"_s) : column;
        QCOMPARE(bench.Values(), after);
        QCOMPARE(bench.session->isModified(), !written);
        QCOMPARE(bench.session->isSaved(), has_path);
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
        Bench bench;
        QVERIFY(bench.Start(ProfileKind::Annual));
        bench.session->SetEdition(true);
        bench.session->EnterValue(1, u"2"_s);
        bench.messages.ExpectQuestion(MeanQuestion(u"1.0833"_s), {}, false);
        bench.session->SaveAs();
        bench.messages.ExpectQuestion(MeanQuestion(u"1.0833"_s), {}, true);
        bench.dialogs.ExpectSave({});
        bench.session->SaveAs();
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
        QVERIFY(bench.session->path().isEmpty());
        QVERIFY(bench.Values()[0] != u"2"_s);
    }

    void saveAs_data() {
        QTest::addColumn<ProfileKind>("kind");
        QTest::addColumn<QString>("chosen");   // below the program folder
        QTest::addColumn<QString>("written");  // likewise
        QTest::addColumn<bool>("warned");
        QTest::addColumn<QString>("name");   // of the caller
        QTest::addColumn<QString>("shown");  // in the caption
        QTest::addColumn<QString>("saved_name");
        using enum ProfileKind;
        QTest::newRow("function") << Function << "Data/Masques/a"
                                  << "Data/Masques/a.dat" << false << "été"
                                  << "été"
                                  << "a";
        QTest::newRow("function elsewhere") << Function << "a.txt"
                                            << "a.txt" << false << "été"
                                            << "été"
                                            << "a";
        QTest::newRow("annual") << Annual << "Data/Profils/Annuel/a.b"
                                << "Data/Profils/Annuel/a.b" << false << "été"
                                << "été"
                                << "a";
        QTest::newRow("annual elsewhere") << Annual << "d.e/a"
                                          << "d.e/a.dat" << true << "été"
                                          << "été"
                                          << "";
        QTest::newRow("monthly elsewhere") << Monthly << "a.dat"
                                           << "a.dat" << false << "été"
                                           << "été"
                                           << "a";
        QTest::newRow("weekly") << Weekly << "Data/Profils/Semaines/a"
                                << "Data/Profils/Semaines/a.dat" << false << "a"
                                << "a"
                                << "a";
        QTest::newRow("weekly elsewhere") << Weekly << "a b"
                                          << "a b.dat" << false << "a b"
                                          << "a b"
                                          << "a b";
        QTest::newRow("daily") << Daily << "Data/Profils/Journalier/été 2"
                               << "Data/Profils/Journalier/été 2.dat" << false << "été 2"
                               << "été 2"
                               << "été 2";
        QTest::newRow("daily elsewhere") << Daily << "Data/Profils/Annuel/a"
                                         << "Data/Profils/Annuel/a.dat" << true << "BAD_PATH"
                                         << "a"
                                         << "";
        QTest::newRow("daily below its folder")
            << Daily << "Data/Profils/Journalier/b/a"
            << "Data/Profils/Journalier/b/a.dat" << true << "BAD_PATH"
            << "a"
            << "";
        QTest::newRow("daily without a title") << Daily << "Data/Profils/Journalier/.dat"
                                               << "Data/Profils/Journalier/.dat" << false << "été"
                                               << "été"
                                               << "";
    }
    void saveAs() {
        QFETCH(ProfileKind, kind);
        QFETCH(QString, chosen);
        QFETCH(QString, written);
        QFETCH(bool, warned);
        QFETCH(QString, name);
        QFETCH(QString, shown);
        Bench bench;
        bench.times = bench.values = Texts(u"1|2"_s);
        QVERIFY(bench.Start(kind));
        const QString path = bench.folder.filePath(written);
        QDir().mkpath(QFileInfo(path).path());
        if (warned)
            bench.messages.Expect(kElsewhere, u"Attention !"_s);
        bench.dialogs.ExpectSave(bench.folder.filePath(chosen));
        bench.session->SaveAs();
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
        QCOMPARE(QDir(bench.dialogs.LastRequest().folder),
                 QDir(QFileInfo(bench.KindPath(u"x"_s)).path()));
        QVERIFY(QFile::exists(path));
        QCOMPARE(bench.session->path(), path);
        QCOMPARE(bench.name, name);
        QCOMPARE(bench.session->caption(),
                 Describe(kind).title_prefix.toString().remove(u'\n') + shown);
        QTEST(bench.session->savedName(), "saved_name");
        QVERIFY(bench.session->isSaved() && !bench.session->isModified());
        QVERIFY(bench.session->canSave());
        // A plain save goes the same way.
        bench.session->SetModified();
        bench.session->Save();
        QCOMPARE(bench.name, name);
        QTEST(bench.session->savedName(), "saved_name");
        QVERIFY(!bench.session->isModified());
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
    }

    void saveAsBackIntoTheFolder() {
        Bench bench;
        QVERIFY(bench.Start(ProfileKind::Daily));
        bench.messages.Expect(kElsewhere, u"Attention !"_s);
        bench.dialogs.ExpectSave(bench.folder.filePath(u"out"_s));
        bench.session->SaveAs();
        QCOMPARE(bench.name, u"BAD_PATH"_s);
        const QString path = bench.KindPath(u"in"_s);
        QDir().mkpath(QFileInfo(path).path());
        bench.dialogs.ExpectSave(path);
        bench.session->SaveAs();
        QCOMPARE(bench.name, u"in"_s);
        bench.session->Save();
        QCOMPARE(bench.name, u"in"_s);
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
    }

    // What cannot be saved leaves path, flags and name, and the place of the next save.
    void refusedSaveAs_data() {
        QTest::addColumn<QString>("chosen");
        QTest::addColumn<bool>("warned");
        QTest::addColumn<QString>("message");
        const QString folder = u"Data/Profils/Journalier/"_s;
        QTest::newRow("cancelled") << "" << false << "";
        QTest::newRow("read-only") << folder + u"fixed.dat"_s << false << "Fichier non modifiable";
        QTest::newRow("read-only once it has its extension")
            << folder + u"fixed"_s << false << "Fichier non modifiable";
        QTest::newRow("read-only elsewhere") << "fixed" << true << "Fichier non modifiable";
        QTest::newRow("a double quote") << folder + u"a\"b"_s << false << kWriteFailed;
        QTest::newRow("a line break") << folder + u"a\nb"_s << false << kWriteFailed;
        QTest::newRow("no such folder") << "none/x" << true << kWriteFailed;
        QTest::newRow("a folder of that name") << folder + u"sub.d"_s << false << kWriteFailed;
    }
    void refusedSaveAs() {
        QFETCH(QString, chosen);
        QFETCH(bool, warned);
        QFETCH(QString, message);
        Bench bench;
        QVERIFY(bench.Start(ProfileKind::Daily));
        const QString path = bench.KindPath(u"was.dat"_s);
        QDir().mkpath(bench.KindPath(u"sub.d"_s));
        const QString fixed[] = {bench.KindPath(u"fixed.dat"_s),
                                 bench.folder.filePath(u"fixed.dat"_s)};
        for (const QString& file : fixed) {
            WriteBytes(file, "old");
            QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadUser));
        }
        bench.dialogs.ExpectSave(path);
        bench.session->SaveAs();
        bench.session->EnterValue(1, u"2"_s);
        const QStringList before = Everything(*bench.session);
        if (warned)
            bench.messages.Expect(kElsewhere, u"Attention !"_s);
        if (!message.isEmpty())
            bench.messages.Expect(message);
        bench.dialogs.ExpectSave(chosen.isEmpty() ? QString() : bench.folder.filePath(chosen));
        bench.session->SaveAs();
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
        QCOMPARE(Everything(*bench.session), before);
        for (const QString& file : fixed) {
            QCOMPARE(ReadBytes(file), "old");
            QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner));
        }
        QCOMPARE(bench.name, u"was"_s);
        bench.session->Save();
        QCOMPARE(bench.name, u"was"_s);
        QVERIFY(ReadBytes(path).contains(bench.Values()[0].toLatin1()));
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
    }

    void failedSave() {
        Bench bench;
        QVERIFY(bench.Start(ProfileKind::Weekly));
        bench.dialogs.ExpectSave(bench.folder.filePath(u"gone/w"_s));
        QVERIFY(QDir(bench.folder.path()).mkpath(u"gone"_s));
        bench.session->SaveAs();
        bench.session->EnterValue(1, u"2"_s);
        const QStringList before = Everything(*bench.session);
        QVERIFY(QDir(bench.folder.filePath(u"gone"_s)).removeRecursively());
        bench.messages.Expect(kWriteFailed);
        bench.session->Save();
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
        QCOMPARE(Everything(*bench.session), before);
    }

    void edition() {
        Bench bench;
        QVERIFY(bench.Start(ProfileKind::Annual));
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
        QCOMPARE(bench.Values(), QStringList({u"0.95"_s, u"1.85"_s}) + Same(10, u"0.92"_s));
        QVERIFY(bench.session->Undo());
        QCOMPARE(bench.Values().mid(0, 3), Texts(u"1|2|1"_s));
        // Nothing to rescale: no step, and what was undone can still be redone.
        QVERIFY(bench.session->Undo() && bench.session->Undo());
        QCOMPARE(bench.Values(), balanced);
        bench.session->SetEdition(true);
        bench.session->SetEdition(false);
        QVERIFY(bench.session->canRedo());
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
    }

    void adjust_data() {
        QTest::addColumn<ProfileKind>("kind");
        QTest::addColumn<QStringList>("column");
        QTest::addColumn<QStringList>("adjusted");
        using enum ProfileKind;
        QTest::newRow("right") << Annual << Same(12, u"1.0"_s) << Same(12, u"1.0"_s);
        QTest::newRow("wrong") << Annual << Same(12, u"3"_s) << Same(12, u"1"_s);
        QTest::newRow("daily") << Daily << Same(24, u"0.25"_s) << Same(24, u"1"_s);
        QTest::newRow("sum of zero") << Daily << Same(24, u"0"_s) << Same(24, u"nan"_s);
        QTest::newRow("weekly") << Weekly << Same(7, u"3"_s) << Same(7, u"3"_s);
        QTest::newRow("function") << Function << Same(3, u"3"_s) << Same(3, u"3"_s);
    }
    void adjust() {
        QFETCH(ProfileKind, kind);
        QFETCH(QStringList, column);
        QFETCH(QStringList, adjusted);
        Bench bench;
        bench.times = bench.values = Same(3, u"1"_s);
        QVERIFY(bench.Start(kind));
        bench.session->SetEdition(true);
        bench.session->EnterColumn(column, 1);
        const bool could_undo = bench.session->canUndo();
        bench.session->Adjust();
        QCOMPARE(bench.Values(), adjusted);
        QVERIFY(bench.session->isModified());
        if (adjusted != column) {
            QVERIFY(bench.session->Undo());
            QCOMPARE(bench.Values(), column);
        } else {
            QCOMPARE(bench.session->canUndo(), could_undo);
        }
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
    }

    void viewOnly_data() { kinds_data(); }
    void viewOnly() {
        QFETCH(ProfileKind, kind);
        Bench bench;
        bench.times = bench.values = bench.names = Same(12, u"3"_s);
        SessionSetup setup = bench.Setup(kind, DisplayMode::View);
        setup.text = bench.folder.filePath(u"p.dat"_s);
        WriteBytes(setup.text, "AZIMUT = 1 2 3\nHAUTEUR = 1 2 3\n");
        if (kind != ProfileKind::Function) {
            ProfileContent content;
            content.labels = RowLabelTexts(kind);
            content.values = content.names = Same(Describe(kind).rows, u"3"_s);
            WriteBytes(setup.text, WriteProfile(kind, content, "\n"));
        }
        QVERIFY(bench.Start(setup));
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
        QVERIFY(!session.RemoveRows({1}));
        QVERIFY(!session.Undo() && !session.Redo());
        session.BeginDrag(1);
        session.DragTo(u"9"_s);
        session.EndDrag();
        QCOMPARE(Everything(session), before);
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
    }

    // Every kind: one step more than there is room for, all the way back and forth.
    void undoAndRedo_data() { kinds_data(); }
    void undoAndRedo() {
        QFETCH(ProfileKind, kind);
        const int room = Describe(kind).coefficients ? 6 : 12;
        Bench bench;
        bench.times = bench.values = Texts(u"1|2|3"_s);
        QVERIFY(bench.Start(kind));
        ProfileSession& session = *bench.session;
        QList<QStringList> states = {bench.Values()};
        for (int i = 0; i <= room; ++i) {
            session.EnterValue(1 + i % 3, u"%1.5"_s.arg(i + 1));
            states.append(bench.Values());
        }
        for (int i = room; i >= 1; --i) {
            QVERIFY(session.Undo());
            QCOMPARE(bench.Values(), states[i]);
        }
        QVERIFY(!session.canUndo() && !session.Undo());
        QCOMPARE(bench.Values(), states[1]);
        for (int i = 2; i < states.size(); ++i) {
            QVERIFY(session.Redo());
            QCOMPARE(bench.Values(), states[i]);
        }
        QVERIFY(!session.canRedo() && !session.Redo());
        // What changes nothing is no step and keeps what was undone; the next edit drops it.
        QVERIFY(session.Undo() && session.Undo());
        const bool free_edit = Describe(kind).coefficients;
        if (free_edit)
            session.SetEdition(true);
        session.EnterValue(2, bench.Values()[1]);
        QVERIFY(session.canRedo());
        session.EnterValue(2, u"0.75"_s);
        QVERIFY(!session.canRedo() && session.Undo());
        QCOMPARE(bench.Values(), states[room - 1]);
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
    }

    void movedRow() {
        Bench bench;
        bench.times = Texts(u"0|10.0|20|30"_s);
        bench.values = Texts(u"a|1e1|c|d"_s);
        QVERIFY(bench.Start(ProfileKind::Function));
        ProfileSession& session = *bench.session;
        session.EnterTime(1, 3, u"25"_s);
        QCOMPARE(bench.Column(kLabel), Texts(u"10|20|25|30"_s));
        QCOMPARE(bench.Values(), Texts(u"10|c|a|d"_s));
        session.EnterTime(3, 3, u"25"_s);
        session.EnterTime(3, 3, u"26"_s);
        QVERIFY(session.Undo());
        QCOMPARE(bench.Column(kLabel), Texts(u"10|20|25|30"_s));
        QVERIFY(session.Undo());
        QCOMPARE(bench.Column(kLabel), Texts(u"0|10|20|30"_s));
        QCOMPARE(bench.Values(), Texts(u"a|10|c|d"_s));
        QVERIFY(!session.canUndo() && session.Redo() && session.Redo());
        QCOMPARE(bench.Column(kLabel), Texts(u"10|20|26|30"_s));
        QCOMPARE(bench.Values(), Texts(u"10|c|a|d"_s));
    }

    void dailyProfileNames() {
        Bench bench;
        const QString folder = bench.folder.filePath(u"Data/Profils/Journalier/"_s);
        for (const QString& file : {u"b.dat"_s, u"A.dat"_s, u"c.txt"_s})
            WriteBytes(folder + file, kDailyFile);
        QVERIFY(bench.Start(ProfileKind::Weekly));
        ProfileSession& session = *bench.session;
        QCOMPARE(session.dailyProfiles(), Texts(u"A|b"_s));
        QCOMPARE(session.table().Choices(), Texts(u"AJOUTER|VOIR|A|b"_s));
        session.AddDailyProfile(u"n"_s);
        session.AddDailyProfile(u"A"_s);
        QCOMPARE(session.table().Choices(), Texts(u"AJOUTER|VOIR|A|b|n"_s));

        // The file names a profile that is in no folder.
        const QString path = bench.folder.filePath(u"w.dat"_s);
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
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
    }

    void drag_data() { kinds_data(); }
    void drag() {
        QFETCH(ProfileKind, kind);
        Bench bench;
        bench.times = bench.values = Texts(u"1|2|3"_s);
        QVERIFY(bench.Start(kind));
        ProfileSession& session = *bench.session;
        const QStringList start = bench.Values();
        const bool coefficients = Describe(kind).coefficients;

        // Back to where it began, to nowhere, and no row at all: no step.
        session.BeginDrag(2);
        session.DragTo(u"5"_s);
        QCOMPARE(bench.Values()[1], u"5"_s);
        session.DragTo(start[1]);
        session.EndDrag();
        session.BeginDrag(2);
        session.EndDrag();
        session.EndDrag();
        for (const int row : {0, static_cast<int>(start.size()) + 1}) {
            session.BeginDrag(row);
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
        QCOMPARE(dragged == alone, !coefficients);
        QVERIFY(session.Undo());
        QCOMPARE(bench.Values(), start);
        QVERIFY(session.Redo());
        QCOMPARE(bench.Values(), dragged);

        // Undo in the middle ends the drag and takes it back; what the mouse still does is lost.
        session.BeginDrag(3);
        session.DragTo(u"6"_s);
        QVERIFY(session.Undo());
        QVERIFY(!session.isDragging());
        QCOMPARE(bench.Values(), dragged);
        session.DragTo(u"7"_s);
        session.EndDrag();
        QCOMPARE(bench.Values(), dragged);
        QVERIFY(session.canRedo());
        QVERIFY2(bench.Done(), qPrintable(bench.Report()));
    }

    void removeRows_data() {
        QTest::addColumn<QList<int>>("rows");
        QTest::addColumn<QString>("left");  // "" when nothing goes
        QTest::newRow("none") << QList<int>() << "";
        QTest::newRow("one") << QList<int>{2} << "1|3|4|5";
        QTest::newRow("apart, twice, in any order") << QList<int>{5, 1, 5} << "2|3|4";
        QTest::newRow("all but two") << QList<int>{1, 2, 4} << "3|5";
        QTest::newRow("all but one") << QList<int>{1, 2, 3, 4} << "";
        QTest::newRow("all") << QList<int>{1, 2, 3, 4, 5} << "";
        QTest::newRow("not there") << QList<int>{0, -1, 6} << "";
        QTest::newRow("some not there") << QList<int>{0, 1, 2, 3, 6} << "4|5";
    }
    void removeRows() {
        QFETCH(QList<int>, rows);
        QFETCH(QString, left);
        Bench bench;
        bench.times = bench.values = Texts(u"1|2|3|4|5"_s);
        QVERIFY(bench.Start(ProfileKind::Function));
        bench.session->EnterTime(5, 5, u"5.0"_s);
        bench.session->EnterTime(5, 5, u"5"_s);
        bench.session->Undo();
        bench.session->Redo();
        bench.session->EnterValue(1, u"1.0"_s);
        bench.session->Undo();
        const QStringList before = Everything(*bench.session);
        QCOMPARE(bench.session->RemoveRows(rows), !left.isEmpty());
        if (left.isEmpty()) {
            QCOMPARE(Everything(*bench.session), before);
            return;
        }
        QCOMPARE(bench.Column(kLabel), Texts(left));
        QCOMPARE(bench.Values(), Texts(left));
        QVERIFY(!bench.session->canUndo() && !bench.session->canRedo());
        QCOMPARE(bench.session->canRemove(), Texts(left).size() > 2);
    }

    void insertedPoint() {
        Bench bench;
        bench.times = bench.values = Texts(u"1|2"_s);
        QVERIFY(bench.Start(ProfileKind::Function));
        QVERIFY(!bench.session->canRemove());
        bench.session->EnterValue(1, u"5"_s);
        bench.session->InsertPoint(3, u"3"_s, u"7"_s);
        bench.session->ForgetHistory();
        QVERIFY(bench.session->canRemove() && !bench.session->canUndo());
        QStringList times;
        QStringList values;
        bench.session->CopyRowsTo(times, values);
        QCOMPARE(times, Texts(u"1|2|3"_s));
        QCOMPARE(values, Texts(u"5|2|7"_s));
    }

private:
    static void kinds_data() {
        QTest::addColumn<ProfileKind>("kind");
        QTest::newRow("function") << ProfileKind::Function;
        QTest::newRow("annual") << ProfileKind::Annual;
        QTest::newRow("monthly") << ProfileKind::Monthly;
        QTest::newRow("weekly") << ProfileKind::Weekly;
        QTest::newRow("daily") << ProfileKind::Daily;
    }

    const QString m_start_folder = QDir::currentPath();
};

QTEST_GUILESS_MAIN(ProfileSessionTest)
#include "ProfileSessionTest.moc"
