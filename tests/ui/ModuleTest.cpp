// SPDX-License-Identifier: GPL-3.0-or-later
#include "InputAPI.h"
#include "functioneditor.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QListView>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>
#include <stdexcept>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

using Step = std::function<void(QWidget*)>;

/// The user before modal windows: one step for each new one, in order. Nobody would close one more.
class User : public QObject {
public:
    explicit User(QList<Step> steps) : m_steps(std::move(steps)) { Next(); }

    bool Done() const { return m_steps.isEmpty(); }

private:
    void Next() {
        QTimer::singleShot(1, this, [this] {
            QWidget* const window = QApplication::activeModalWidget();
            if (window == nullptr || window == m_seen)
                return Next();
            if (m_steps.isEmpty())
                qFatal("a window that nobody expects: %s", qPrintable(window->windowTitle()));
            m_seen = window;
            const Step step = m_steps.takeFirst();
            Next();  // before the step: what it presses may open the next window and wait for it
            step(window);
        });
    }

    QList<Step> m_steps;
    QPointer<QWidget> m_seen;
};

Step Press(const QString& name) {
    return [name](QWidget* window) {
        for (auto* const button : window->findChildren<QAbstractButton*>()) {
            if (button->accessibleName() == name)
                return button->click();
        }
        qFatal("no button %s", qPrintable(name));
    };
}

Step Enter(int row, const QString& value, const Step& then) {
    return [=](QWidget* window) {
        auto* const model = window->findChild<QAbstractItemView*>()->model();
        model->setData(model->index(row - 1, 1), value);
        then(window);
    };
}

QString Cell(const QWidget* window, int row) {
    const auto* const model = window->findChild<QAbstractItemView*>()->model();
    return model->index(row - 1, 1).data().toString();
}

// Chooses the file at `path` from the list of all files, where one without a dot must stand too.
Step ChooseFile(const QString& path) {
    return [path](QWidget* window) {
        auto* const types = window->findChild<QComboBox*>(u"fileTypeCombo"_s);
        QCOMPARE(types->currentText(), u"Fichiers Textes (*.dat)"_s);
        QTest::keyClick(types, Qt::Key_Down);
        QCOMPARE(types->currentText(), u"All Files (*.*)"_s);
        auto* const dialog = qobject_cast<QFileDialog*>(window);
        dialog->setDirectory(QFileInfo(path).path());
        auto* const list = window->findChild<QListView*>(u"listView"_s);
        const auto shown = [&] {
            return list->model()->rowCount(list->rootIndex()) == 1 &&
                   list->rootIndex().model()->index(0, 0, list->rootIndex()).data() ==
                       QFileInfo(path).fileName();
        };
        QTRY_VERIFY(shown());
        auto* const edit = window->findChild<QWidget*>(u"fileNameEdit"_s);
        edit->setProperty("text", QFileInfo(path).fileName());
        QTest::keyClick(edit, Qt::Key_Return);
    };
}

using Rows = QList<QStringList>;

void KeepRow(size_t row, const char* label, const char* value, const char* name, void* user) {
    auto* const rows = static_cast<Rows*>(user);
    QCOMPARE(row, static_cast<size_t>(rows->size()));
    rows->append({QString::fromUtf8(label), QString::fromUtf8(value), QString::fromUtf8(name)});
}

functioneditor_request EmptyRequest() {
    functioneditor_request request = {};
    request.size = sizeof request;
    request.kind = FUNCTIONEDITOR_FUNCTION;
    request.mode = FUNCTIONEDITOR_EDIT;
    return request;
}

// What `call` returns before a user who takes all those steps.
template <typename Call>
int With(const QList<Step>& steps, const Call& call) {
    const User user(steps);
    const int result = call();
    return user.Done() ? result : -1000;
}

int Prompt(const QList<Step>& steps, functioneditor_request& request) {
    return With(steps, [&request] { return functioneditor_prompt(&request); });
}

const Step kOk = Press(u"OK"_s);
const Step kCancel = Press(u"Cancel"_s);
const Step kYes = Press(u"Yes"_s);
const Step kEscape = [](QWidget* window) { QTest::keyClick(window, Qt::Key_Escape); };

}  // namespace

/// The module as programs call it.
class ModuleTest : public QObject {
    Q_OBJECT

private slots:
    // As in a host that has none, the module makes the application object.
    void initTestCase() {
        struct Host : InputAPI {
            using InputAPI::Init;
        };
        Host().Init();
        QVERIFY(qApp != nullptr);
    }

    // A dialog that was the only window does not end the host's own event loop.
    void TheLoopOfTheHostGoesOn() {
        constexpr int kHostEnds = 7;
        int results[] = {0, 0};
        QTimer::singleShot(0, [&results] {
            for (int& result : results)
                result = With({kOk}, [] { return InputAPI().Prompt(-1, 3, {}); });
            QTimer::singleShot(1, [] { QCoreApplication::exit(kHostEnds); });
        });
        QCOMPARE(QCoreApplication::exec(), kHostEnds);
        QCOMPARE(results[0], 1);
        QCOMPARE(results[1], 1);
    }

    void InputApiLeavesListsAlone() {
        QStringList times = {u"0"_s, u"1"_s, u"2"_s};
        QStringList values = {u"1.50"_s, u"2"_s, u"3"_s};
        QString name = u"Débit"_s;
        InputAPI editor;
        editor.m_pTimeList = &times;
        editor.m_pValueList = &values;
        editor.m_pName = &name;

        QString title;
        const Step accept = [&](QWidget* window) {
            title = window->windowTitle();
            Enter(2, u"7"_s, kOk)(window);
        };
        const auto prompt = [&editor] { return editor.Prompt(-1, 3, {}); };
        QCOMPARE(With({accept}, prompt), 1);
        QCOMPARE(title, u" Débit"_s);
        QCOMPARE(With({Enter(1, u"7"_s, kCancel), kYes}, prompt), 2);
        QCOMPARE(values, QStringList({u"1.50"_s, u"2"_s, u"3"_s}));
        QCOMPARE(times, QStringList({u"0"_s, u"1"_s, u"2"_s}));
        QCOMPARE(name, u"Débit"_s);
    }

    void EveryKindOpensOnNothing() {
        for (const int kind : {-2, -1, 0, 1, 2, 3, 4})
            QCOMPARE(With({kOk}, [kind] { return InputAPI().Prompt(kind, 3, {}); }), 1);
    }

    void RefusedAndMissingFiles() {
        const QTemporaryDir folder;
        QFile file(folder.filePath(u"été.dat"_s));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("MOIS =\nPLUIE =\n") > 0);
        file.close();
        const QByteArray path = file.fileName().toUtf8();

        const auto prompt = [&file] { return InputAPI().Prompt(0, 1, file.fileName()); };
        QCOMPARE(With({kOk}, prompt), 0);
        functioneditor_request request = EmptyRequest();
        request.kind = FUNCTIONEDITOR_ANNUAL;
        request.mode = FUNCTIONEDITOR_VIEW;
        request.text = path.constData();
        QCOMPARE(Prompt({kOk}, request), FUNCTIONEDITOR_REFUSED);

        // A file that cannot be opened is no reason to end the dialog, nor is a later Open.
        QVERIFY(file.remove());
        const Step edit_and_open = Enter(1, u"2"_s, Press(u"Ouvrir"_s));
        const Step accept_edit = [](QWidget* window) {
            QCOMPARE(Cell(window, 1), u"1.99"_s);
            kOk(window);
        };
        QCOMPARE(With({kOk, edit_and_open, kEscape, accept_edit}, prompt), 1);
    }

    // A file that is read, at the start or later, replaces what the caller handed over.
    void ListsHoldTheFileReadLast() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"sans-point"_s);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write("AZIMUT = 0 1\nHAUTEUR = 5 7.5\n") > 0);
        file.close();
        for (const int mode : {1, 3}) {
            QStringList times = {u"9"_s};
            QStringList values = {u"9"_s, u"8"_s};
            QStringList extras = {u"x"_s};
            InputAPI editor;
            editor.m_pTimeList = &times;
            editor.m_pValueList = &values;
            editor.m_pExtraList = &extras;
            const QList<Step> steps =
                mode == 1 ? QList<Step>{Enter(1, u"2"_s, kOk)}
                          : QList<Step>{Press(u"Ouvrir"_s), ChooseFile(path), kCancel, kYes};
            QCOMPARE(
                With(steps, [&] { return editor.Prompt(-1, mode, mode == 1 ? path : QString()); }),
                mode == 1 ? 1 : 2);
            QCOMPARE(times, QStringList({u"0.00"_s, u"1.00"_s}));
            QCOMPARE(values, QStringList({u"5.00"_s, u"7.50"_s}));
            QVERIFY(extras.isEmpty());
        }
    }

    void OtherThreadsShowNothing() {
        int results[2] = {1, 1};
        std::thread([&results] {
            QObject here;  // where an event loop would run
            QMetaObject::invokeMethod(
                &here, [] { qFatal("a dialog in another thread"); }, Qt::QueuedConnection);
            results[0] = InputAPI().Prompt(-1, 3, {});
            functioneditor_request request = EmptyRequest();
            results[1] = functioneditor_prompt(&request);
        }).join();
        QCOMPARE(results[0], -1);
        QCOMPARE(results[1], FUNCTIONEDITOR_NO_DIALOG);
    }

    void RowsComeBackAfterOk() {
        const char* const times[] = {"0", "1e0", "2"};
        const char* const values[] = {"1.50", nullptr, "3"};
        Rows rows;
        functioneditor_request request = EmptyRequest();
        request.times = times;
        request.values = values;
        request.count = 3;
        request.on_row = KeepRow;
        request.user = &rows;

        QCOMPARE(Prompt({kCancel, kYes}, request), FUNCTIONEDITOR_CANCELLED);
        QVERIFY(rows.isEmpty());
        QCOMPARE(Prompt({Enter(3, u"4,25"_s, kOk)}, request), FUNCTIONEDITOR_OK);
        QCOMPARE(rows,
                 Rows({{u"0"_s, u"1.50"_s, {}}, {u"1e0"_s, {}, {}}, {u"2"_s, u"4.25"_s, {}}}));
    }

    // It is the host's code: what it throws is no reason to say that nothing was shown.
    void ACallbackMayThrow() {
        functioneditor_request request = EmptyRequest();
        request.kind = FUNCTIONEDITOR_DAILY;
        int calls = 0;
        request.user = &calls;
        request.on_row = [](size_t, const char*, const char*, const char*, void* user) {
            ++*static_cast<int*>(user);
            throw std::runtime_error("the host's");
        };
        const int result = Prompt({kOk}, request);
        QCOMPARE(result, FUNCTIONEDITOR_ERROR_INTERNAL);
        QCOMPARE(calls, 1);
        QVERIFY(QByteArray(functioneditor_result_text(result)).contains("may have been shown"));
    }

    // A daily profile is saved into a folder with a long title; the name that comes back is cut to
    // the caller's buffer between characters.
    void NamesAreCutBetweenCharacters() {
        const QTemporaryDir folder;
        const QDir data(folder.path());
        QVERIFY(data.mkpath(u"Data/Profils/Journalier"_s));
        const QString path = data.filePath(u"Data/Profils/Journalier/étés.dat"_s);
        const QByteArray program_folder = folder.path().toUtf8();
        const auto type_path = [&path](QWidget* window) {
            auto* const edit = window->findChild<QWidget*>(u"fileNameEdit"_s);
            edit->setProperty("text", path);
            QTest::keyClick(edit, Qt::Key_Return);
        };
        const auto save_as = [](QWidget* window) {
            Press(u"Enregistrer sous"_s)(window);
            kOk(window);
        };
        const std::pair<int, QByteArray> cases[] = {
            {7, "étés"}, {6, "été"}, {5, "ét"}, {2, ""}, {1, ""}};
        for (const auto& [size, expected] : cases) {
            QFile::remove(path);
            QByteArray name(size, '\0');
            functioneditor_request request = EmptyRequest();
            request.kind = FUNCTIONEDITOR_DAILY;
            request.program_folder = program_folder.constData();
            request.name = name.data();
            request.name_size = static_cast<size_t>(size);
            QCOMPARE(Prompt({save_as, type_path}, request), FUNCTIONEDITOR_OK);
            QVERIFY(QFile::exists(path));
            QCOMPARE(QByteArray(name.constData()), expected);
            QCOMPARE(request.name_length, size_t{6});
        }
    }

    void WrongRequests() {
        static const char* const kBroken[] = {"\xC3"};
        static char open_name[] = {'a', 'b'};
        const std::pair<int, std::function<void(functioneditor_request&)>> cases[] = {
            {FUNCTIONEDITOR_ERROR_REQUEST, [](auto& request) { request.size = FUNCTIONEDITOR_REQUEST_SIZE_0_1 - 1; }},
            {FUNCTIONEDITOR_ERROR_KIND, [](auto& request) { request.kind = -2; }},
            {FUNCTIONEDITOR_ERROR_KIND, [](auto& request) { request.kind = 4; }},
            {FUNCTIONEDITOR_ERROR_MODE, [](auto& request) { request.mode = 0; }},
            {FUNCTIONEDITOR_ERROR_MODE, [](auto& request) { request.mode = 4; }},
            {FUNCTIONEDITOR_ERROR_ROWS,
             [](auto& request) { request.count = FUNCTIONEDITOR_MAX_ROWS + size_t{1}; }},
            {FUNCTIONEDITOR_ERROR_NAME,  // has no end
             [](auto& request) {
                 request.name = open_name;
                 request.name_size = sizeof open_name;
             }},
            {FUNCTIONEDITOR_ERROR_NAME, [](auto& request) { request.name = open_name; }},
            {FUNCTIONEDITOR_ERROR_ENCODING, [](auto& request) { request.text = "a\xFFz"; }},
            {FUNCTIONEDITOR_ERROR_ENCODING, [](auto& request) {
                 request.values = kBroken;
                 request.count = 1;
             }}};
        for (const auto& [expected, spoil] : cases) {
            functioneditor_request request = EmptyRequest();
            spoil(request);
            QCOMPARE(Prompt({}, request), expected);
            QVERIFY(functioneditor_result_text(expected) != functioneditor_result_text(-99));
        }
        QCOMPARE(functioneditor_prompt(nullptr), FUNCTIONEDITOR_ERROR_REQUEST);
    }
};

QTEST_APPLESS_MAIN(ModuleTest)
#include "ModuleTest.moc"
