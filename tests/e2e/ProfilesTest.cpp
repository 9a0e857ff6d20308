// SPDX-License-Identifier: GPL-3.0-or-later
#include "HostRun.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// As a host's program reaches the module.
const QString kCppHost = QStringLiteral(CPP_HOST);
const QString kCHost = QStringLiteral(C_HOST);

QByteArray Repeated(const QByteArray& item, int count) {
    return (item + ' ').repeated(count).trimmed();
}

// The dialogs with a column of names are 81 pixels wider; the button stays centred.
QPoint OkPlace(const QString& kind) {
    return kOkButton + QPoint(kind == u"monthly" ? 40 : 0, 0);
}

}  // namespace

/// Profiles as a host's user opens, edits and saves them: through the module, in real windows.
class ProfilesTest : public HostTest {
    Q_OBJECT

    QString m_host = m_folder.filePath(u"host"_s);
    QString m_output = m_folder.filePath(u"output.txt"_s);

    QString DataPath(const QString& path) const { return m_folder.filePath(u"Data/"_s + path); }

    void Start(HostRun& host, const QString& program, const QStringList& arguments) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        // The toolkit keeps what its file dialogs were used for.
        environment.insert(u"XDG_CONFIG_HOME"_s, m_folder.path());
        environment.insert(u"FUNCTIONEDITOR_LIBRARY"_s, QStringLiteral(MODULE));
        host.Program().setProcessEnvironment(environment);
        host.Program().setStandardOutputFile(m_output);
        host.Program().start(program, arguments);
    }

    // Types over the first value.
    static bool EnterFirstValue(HostRun& host, const QString& value) {
        return host.Keys({u"ctrl+Home"_s, u"Right"_s}) && host.Type(value) &&
               host.Keys({u"Return"_s});
    }

private slots:
    // Profiles stand beside the program.
    void initTestCase() {
        QVERIFY(QFile::copy(kCppHost, m_host));
        QVERIFY(!RunTool(u"cp"_s, {u"-r"_s, QStringLiteral(SHIPPED_DATA), DataPath({})}).isNull());
    }

    // One for each way of a name: a kind that takes its file's, one that keeps the host's, and
    // points, whose files are no masks.
    void SavesWhatWasEdited() {
        const auto first_line = [](const char* path) {
            return ReadAll(QStringLiteral(SHIPPED_DATA) + QLatin1StringView(path)).split('\n')[0];
        };
        const QString constant = DataPath(u"Profils/Journalier/Constant.dat"_s);
        // Arguments, title up to the name, folder, what is typed, the file.
        const std::tuple<QStringList, QString, QString, QString, QByteArray> cases[] = {
            {{u"daily"_s, u"open"_s, u"--file"_s, constant},
             u"Profil Journalier : "_s,
             u"Profils/Journalier"_s,
             u"2"_s,
             first_line("Profils/Journalier/Constant.dat") + "\nCOEFFICIENT = 1.92 " +
                 Repeated("0.96", 23) + '\n'},
            {QStringList{u"monthly"_s, u"edit"_s} + QStringList(12, u"m=600=Week-end"_s),
             u"Profil Mensuel : "_s, u"Profils/Mensuel"_s, u"612"_s,
             first_line("Profils/Annuel/Constant.dat") + "\nCONSOMMATION = 612 " +
                 Repeated("600", 11) + "\nPROFIL = " + Repeated("\"Week-end\"", 12) + '\n'},
            {{u"function"_s, u"edit"_s, u"0=1.50"_s, u"1e1=4"_s},
             u" "_s,
             u"Masques"_s,
             u"-7"_s,
             "Value of time = 0 1e1\nValue of function = -7 4\n"}};
        for (const auto& [arguments, title, folder, typed, expected] : cases) {
            const bool renames = arguments[0] == u"daily";
            const QString name = renames ? u"Neuf"_s : u"Essai"_s;
            const QString saved = DataPath(folder + u"/Neuf"_s);
            HostRun host;
            Start(host, m_host, QStringList(arguments) << u"--name"_s << u"Essai"_s);
            QVERIFY(host.WaitForWindow(title + (renames ? u"Constant"_s : u"Essai"_s)));
            QVERIFY(EnterFirstValue(host, typed));
            QVERIFY(host.Keys({u"ctrl+shift+s"_s}) && host.WaitForWindow(u"Save As"_s));
            QVERIFY(host.Type(saved) && host.Keys({u"Return"_s}) && host.WaitUntilClosed());
            QVERIFY(host.WaitForWindow(title + name));
            QVERIFY(host.Click(OkPlace(arguments[0])) && host.HasEnded());
            QCOMPARE(ReadAll(saved + u".dat"_s), expected);
            const QByteArray output = ReadAll(m_output);
            QVERIFY2(output.startsWith("result: 1\nname: " + name.toLatin1() + '\n'),
                     output.constData());
        }
    }

    void HandsTheRowsBack() {
        QStringList programs = {kCHost, QStringLiteral(PYTHON_HOST)};
        programs.removeAll(QString());
        for (const QString& program : programs) {
            HostRun host;
            Start(host, program,
                  {u"function"_s, u"edit"_s, u"--name"_s, u"Essai"_s, u"0=1.50"_s, u"10=4"_s});
            QVERIFY(host.WaitForWindow(u" Essai"_s));
            QVERIFY(EnterFirstValue(host, u"2,5"_s) && host.PressOk());
            QCOMPARE(ReadAll(m_output),
                     "row 1: 0 | 2.5 | \nrow 2: 10 | 4 | \nresult: 1\nname: Essai\n");

            HostRun monthly;
            Start(monthly, program,
                  {u"monthly"_s, u"edit"_s, u"--data"_s, m_folder.path(), u"m=600=Bureau"_s});
            QVERIFY(monthly.WaitForWindow(u"Profil Mensuel : "_s) &&
                    monthly.Click(OkPlace(u"monthly"_s)) && monthly.HasEnded());
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
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
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
