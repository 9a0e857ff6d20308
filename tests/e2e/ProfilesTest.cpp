#include "HostTest.h"

#include <QDir>
#include <QDirIterator>

using namespace Qt::StringLiterals;

namespace {

// As a host's program reaches the module.
const QString kCppHost = QStringLiteral(CPP_HOST);
const QString kCHost = QStringLiteral(C_HOST);

bool CopyFolder(const QString& from, const QString& to) {
    QDirIterator files(from, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = QDir(to).filePath(QDir(from).relativeFilePath(files.next()));
        if (!QDir().mkpath(QFileInfo(path).path()) || !QFile::copy(files.filePath(), path))
            return false;
    }
    return true;
}

QByteArray Repeated(const QByteArray& item, int count) {
    return (item + ' ').repeated(count).trimmed();
}

struct Kind {
    QString name;
    QString title;
    QString folder;
    bool renames;
};

const Kind kFunction = {u"function"_s, u" "_s, u"Masques"_s, false};
const Kind kAnnual = {u"annual"_s, u"Profil Annuel : "_s, u"Profils/Annuel"_s, false};
const Kind kMonthly = {u"monthly"_s, u"Profil Mensuel : "_s, u"Profils/Mensuel"_s, false};
const Kind kWeekly = {u"weekly"_s, u"Profil Hebdomadaire : "_s, u"Profils/Semaines"_s, true};
const Kind kDaily = {u"daily"_s, u"Profil Journalier : "_s, u"Profils/Journalier"_s, true};

}  // namespace

Q_DECLARE_METATYPE(Kind)

/// Profiles as a host's user opens, edits and saves them: through the module, in real windows.
class ProfilesTest : public HostTest {
    Q_OBJECT

    QString m_host = m_folder.filePath(u"host"_s);
    QString m_output = m_folder.filePath(u"output.txt"_s);

    QString DataPath(const QString& path) const { return m_folder.filePath(u"Data/"_s + path); }

    void Start(HostRun& host, const QString& program, const QStringList& arguments) {
        QProcessEnvironment environment = m_screen.Environment();
        // The toolkit keeps what its file dialogs were used for.
        environment.insert(u"XDG_CONFIG_HOME"_s, m_folder.path());
        environment.insert(u"FUNCTIONEDITOR_LIBRARY"_s, QStringLiteral(MODULE));
        host.Program().setProcessEnvironment(environment);
        host.Program().setStandardOutputFile(m_output);
        host.Program().start(program, arguments);
    }

    static bool Cancel(HostRun& host) {
        return host.Keys({u"Escape"_s}) && host.WaitForWindow(u"Cancelling"_s) &&
               host.Keys({u"Return"_s}) && host.HasEnded();
    }

    // Types over the first value.
    static bool EnterFirstValue(HostRun& host, const QString& value) {
        return host.Keys({u"ctrl+Home"_s, u"Right"_s}) && host.Type(value) &&
               host.Keys({u"Return"_s});
    }

private slots:
    void initTestCase() {
        StartScreen();
        // Profiles stand beside the program.
        QVERIFY(QFile::copy(kCppHost, m_host));
    }

    void init() { QVERIFY(CopyFolder(QStringLiteral(SHIPPED_DATA), m_folder.filePath(u"Data"_s))); }

    void cleanup() { QVERIFY(QDir(m_folder.filePath(u"Data"_s)).removeRecursively()); }

    void SavesWhatWasEdited_data() {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<QString>("opened");  // empty: the rows are handed over
        QTest::addColumn<QStringList>("rows");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QByteArray>("expected");
        const auto open = [](const Kind& kind, const QString& file, const QString& typed,
                             const QByteArray& expected) {
            QTest::addRow("%s, open", qPrintable(kind.name))
                << kind << file << QStringList() << typed << expected;
        };
        const auto edit = [](const Kind& kind, const QStringList& rows, const QString& typed,
                             const QByteArray& expected) {
            QTest::addRow("%s, edit", qPrintable(kind.name))
                << kind << QString() << rows << typed << expected;
        };
        const auto shipped = [](const char* path) {
            return ReadAll(QStringLiteral(SHIPPED_DATA) + QLatin1StringView(path));
        };
        const QByteArray months = shipped("Profils/Annuel/Constant.dat").split('\n').front();
        const QByteArray hours = shipped("Profils/Journalier/Constant.dat").split('\n').front();

        const QByteArray annual = months + "\nCOEFFICIENT = 1.99 " + Repeated("0.91", 11) + '\n';
        open(kAnnual, u"Constant"_s, u"2"_s, annual);
        edit(kAnnual, QStringList(12, u"m=1"_s), u"2"_s, annual);
        const QByteArray daily = hours + "\nCOEFFICIENT = 1.92 " + Repeated("0.96", 23) + '\n';
        open(kDaily, u"Constant"_s, u"2"_s, daily);
        edit(kDaily, QStringList(24, u"h=1"_s), u"2"_s, daily);
        open(kMonthly, u"Ecole"_s, u"2100"_s,
             shipped("Profils/Mensuel/Ecole.dat").replace("= 2000 ", "= 2100 "));
        edit(kMonthly, QStringList(12, u"m=600=Week-end"_s), u"612"_s,
             months + "\nCONSOMMATION = 612 " + Repeated("600", 11) +
                 "\nPROFIL = " + Repeated("\"Week-end\"", 12) + '\n');
        open(kWeekly, u"Bureau"_s, u"1000"_s,
             shipped("Profils/Semaines/Bureau.dat").replace("= 900 ", "= 1000 "));
        edit(kWeekly, {}, u"120"_s,
             "JOURS = Lundi Mardi Mercredi Jeudi Vendredi Samedi Dimanche\n"
             "CONSOMMATION = 120 100 100 100 100 100 100\nPROFIL = " +
                 Repeated("\"\"", 7) + '\n');
        open(kFunction, u"Colline"_s, u"1.5"_s,
             shipped("Masques/Colline.dat")
                 .replace("AZIMUT", "Value of time")
                 .replace("HAUTEUR = 0.27", "Value of function = 1.5"));
        edit(kFunction, {u"0=1.50"_s, u"1e1=4"_s}, u"-7"_s,
             "Value of time = 0 1e1\nValue of function = -7 4\n");
    }
    void SavesWhatWasEdited() {
        QFETCH(const Kind, kind);
        QFETCH(const QString, opened);
        QFETCH(const QStringList, rows);
        QFETCH(const QString, typed);
        QFETCH(const QByteArray, expected);
        const auto& [kind_name, title, folder, renames] = kind;
        const QString saved = DataPath(folder + u"/Neuf"_s);

        QStringList arguments = {kind_name, u"edit"_s, u"--name"_s, u"Essai"_s};
        if (!opened.isEmpty()) {
            const QString file = DataPath(folder + u'/' + opened + u".dat"_s);
            arguments = {kind_name, u"open"_s, u"--name"_s, u"Essai"_s, u"--file"_s, file};
        }
        const QString shown = opened.isEmpty() ? u"Essai"_s : opened;
        HostRun host(m_screen);
        Start(host, m_host, arguments + rows);
        QVERIFY(host.WaitForWindow(title + shown));
        QVERIFY(EnterFirstValue(host, typed));
        QVERIFY(host.Keys({u"ctrl+shift+s"_s}) && host.WaitForWindow(u"Save As"_s));
        QVERIFY(host.Type(saved) && host.Keys({u"Return"_s}) && host.WaitUntilClosed());
        QVERIFY(host.WaitForWindow(title + (renames ? u"Neuf"_s : shown)));
        QVERIFY(host.PressOk());
        QCOMPARE(ReadAll(saved + u".dat"_s), expected);
        const QByteArray name = renames ? "Neuf" : "Essai";
        const QByteArray output = ReadAll(m_output);
        QVERIFY2(output.startsWith("result: 1\nname: " + name + '\n'), output.constData());

        // Looked at again. What is saved of a function is not in the form of a mask.
        HostRun again(m_screen);
        Start(again, m_host, {kind_name, u"view"_s, u"--file"_s, saved + u".dat"_s});
        if (folder == u"Masques") {
            QVERIFY(again.PassMessage() && again.HasEnded());
            QCOMPARE(ReadAll(m_output), "result: 0\nname: \n");
            return;
        }
        QVERIFY(again.WaitForWindow(title + u"Neuf"_s));
        QVERIFY(EnterFirstValue(again, u"5"_s) && again.Keys({u"ctrl+s"_s}));
        QVERIFY(Cancel(again));
        QCOMPARE(ReadAll(m_output), "result: 2\nname: \n");
        QCOMPARE(ReadAll(saved + u".dat"_s), expected);
    }

    void SavesBackAndForgetsWhatWasCancelled() {
        const QString path = DataPath(u"Profils/Semaines/Logement.dat"_s);
        const QByteArray before = ReadAll(path);
        HostRun host(m_screen);
        Start(host, m_host, {u"weekly"_s, u"open"_s, u"--file"_s, path});
        QVERIFY(host.WaitForWindow(u"Profil Hebdomadaire : Logement"_s));
        QVERIFY(EnterFirstValue(host, u"570"_s) && host.Keys({u"ctrl+s"_s}));
        QVERIFY(EnterFirstValue(host, u"580"_s) && Cancel(host));
        QCOMPARE(ReadAll(m_output), "result: 2\nname: Logement\n");
        QCOMPARE(ReadAll(path), QByteArray(before).replace("= 560 ", "= 570 "));
    }

    void HandsTheRowsBack() {
        QStringList programs = {kCHost, QStringLiteral(PYTHON_HOST)};
        programs.removeAll(QString());
        for (const QString& program : programs) {
            HostRun host(m_screen);
            Start(host, program,
                  {u"function"_s, u"edit"_s, u"--name"_s, u"Essai"_s, u"0=1.50"_s, u"10=4"_s});
            QVERIFY(host.WaitForWindow(u" Essai"_s));
            QVERIFY(EnterFirstValue(host, u"2,5"_s) && host.PressOk());
            QCOMPARE(ReadAll(m_output),
                     "row 1: 0 | 2.5 | \nrow 2: 10 | 4 | \nresult: 1\nname: Essai\n");

            HostRun monthly(m_screen);
            Start(monthly, program,
                  {u"monthly"_s, u"edit"_s, u"--data"_s, m_folder.path(), u"m=600=Bureau"_s});
            QVERIFY(monthly.WaitForWindow(u"Profil Mensuel : "_s) && monthly.PressOk());
            const QList<QByteArray> lines = ReadAll(m_output).split('\n');
            QCOMPARE(lines.size(), 12 + 3);
            QCOMPARE(lines[0], "row 1: Janvier | 600 | Bureau");
            QVERIFY(lines[7].startsWith("row 8: Ao\xC3\xBBt | 1800 | "));
            QCOMPARE(lines[12], "result: 1");
        }
    }

    // A host goes on; the program says in one line why it ends. The toolkit would abort both.
    void NobodyAbortsWithoutADisplay() {
        const QByteArray content = HostFile({{"0", "1.50"}, {"10", "4"}});
        QVERIFY(WriteAll(m_file, content));
        const std::pair<QString, QString> cases[] = {{},
                                                     {u"DISPLAY"_s, u":4095"_s},  // no answer
                                                     {u"QT_QPA_PLATFORM"_s, u"nothing"_s}};
        const QStringList profile = {u"daily"_s, u"edit"_s};
        const std::tuple<QString, QStringList, QByteArray> programs[] = {
            {m_host, profile, "result: -1\nname: \n"},
            {kCHost, profile, "result: -1\nname: \n"},
            {HostRun::ProgramPath(), {m_file}, ""}};
        for (const auto& [variable, value] : cases) {
            QProcessEnvironment environment = m_screen.Environment();
            environment.remove(u"DISPLAY"_s);
            environment.remove(u"QT_QPA_PLATFORM"_s);
            if (!variable.isEmpty())
                environment.insert(variable, value);
            for (const auto& [program, arguments, output] : programs) {
                QProcess host;
                host.setProcessEnvironment(environment);
                host.start(program, arguments);
                QVERIFY(host.waitForFinished());
                QCOMPARE(host.exitStatus(), QProcess::NormalExit);
                QCOMPARE(host.exitCode(), 1);
                QCOMPARE(host.readAllStandardOutput(), output);
                const QByteArray error = host.readAllStandardError();
                QVERIFY2(program == m_host || (error.count('\n') == 1 && error.endsWith('\n')),
                         error.constData());
            }
        }
        QCOMPARE(ReadAll(m_file), content);
    }
};

QTEST_GUILESS_MAIN(ProfilesTest)
#include "ProfilesTest.moc"
