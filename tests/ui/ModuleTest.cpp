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

#include <stdexcept>
#include <thread>
#include <type_traits>

using namespace Qt::StringLiterals;

extern "C" int prompt_of_former_host(functioneditor_row on_row, void* user);

namespace {

// Of the list of all files, where one without a dot must stand too, or as a new file.
void ChooseFile(QFileDialog& dialog, const QString& path) {
    dialog.setDirectory(QFileInfo(path).path());
    if (dialog.acceptMode() == QFileDialog::AcceptOpen) {
        auto* const types = dialog.findChild<QComboBox*>(u"fileTypeCombo"_s);
        QCOMPARE(types->currentText(), u"Fichiers Textes (*.dat)"_s);
        QTest::keyClick(types, Qt::Key_Down);
        QCOMPARE(types->currentText(), u"All Files (*.*)"_s);
        const auto* const list = dialog.findChild<QListView*>(u"listView"_s);
        QTRY_COMPARE(list->model()->rowCount(list->rootIndex()), 1);
    }
    auto* const edit = dialog.findChild<QWidget*>(u"fileNameEdit"_s);
    edit->setProperty("text", QFileInfo(path).fileName());
    QTest::keyClick(edit, Qt::Key_Return);
}

/// The user before modal windows, who does in each new one what the next text says: names of
/// buttons, entries such as "2=7" into row 2, a file to choose, or the title to look at, between
/// bars. Nobody would close one more window.
class User : public QObject {
public:
    explicit User(QStringList windows) : m_windows(std::move(windows)) { Next(); }

    bool Done() const { return m_windows.isEmpty(); }

private:
    void Next() {
        QTimer::singleShot(1, this, [this] {
            QWidget* const window = QApplication::activeModalWidget();
            if (window == nullptr || window == m_seen)
                return Next();
            if (m_windows.isEmpty())
                qFatal("a window that nobody expects: %s", qPrintable(window->windowTitle()));
            m_seen = window;
            const QStringList actions = m_windows.takeFirst().split(u'|');
            Next();  // before the actions: what they press may open the next window and wait for it
            for (const QString& action : actions)
                Act(*window, action);
        });
    }

    static void Act(QWidget& window, const QString& action) {
        if (action.contains(u'=')) {
            auto* const model = window.findChild<QAbstractItemView*>()->model();
            model->setData(model->index(action.section(u'=', 0, 0).toInt() - 1, 1),
                           action.section(u'=', 1));
        } else if (auto* const dialog = qobject_cast<QFileDialog*>(&window); dialog != nullptr) {
            action.isEmpty() ? dialog->reject() : ChooseFile(*dialog, action);
        } else {
            for (auto* const button : window.findChildren<QAbstractButton*>()) {
                if (button->accessibleName() == action)
                    return button->click();
            }
            if (window.windowTitle() != action)
                qFatal("no button and no title %s", qPrintable(action));
        }
    }

    QStringList m_windows;
    QPointer<QWidget> m_seen;
};

using Rows = QList<QStringList>;
using Request = functioneditor_request;

void KeepRow(size_t row, const char* label, const char* value, const char* name, void* user) {
    auto* const rows = static_cast<Rows*>(user);
    QCOMPARE(row, static_cast<size_t>(rows->size()));
    rows->append({QString::fromUtf8(label), QString::fromUtf8(value), QString::fromUtf8(name)});
}

Request EmptyRequest() {
    Request request = {};
    request.size = sizeof request;
    request.kind = FUNCTIONEDITOR_FUNCTION;
    request.mode = FUNCTIONEDITOR_EDIT;
    return request;
}

template <typename Value>
Request Changed(Value Request::*field, std::type_identity_t<Value> value,
                Request request = EmptyRequest()) {
    request.*field = value;
    return request;
}

// What `call` returns before a user who meets all those windows.
template <typename Call>
int With(const QStringList& windows, const Call& call) {
    const User user(windows);
    const int result = call();
    return user.Done() ? result : -1000;
}

int Prompt(const QStringList& windows, Request& request) {
    return With(windows, [&request] { return functioneditor_prompt(&request); });
}

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
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        Host().Init();
        QVERIFY(qApp != nullptr);
    }

    // A dialog that was the only window does not end the host's own event loop.
    void TheLoopOfTheHostGoesOn() {
        constexpr int kHostEnds = 7;
        int results[] = {0, 0};
        QTimer::singleShot(0, [&results] {
            for (int& result : results)
                result = With({u"OK"_s}, [] { return InputAPI().Prompt(-1, 3, {}); });
            QTimer::singleShot(1, [] { QCoreApplication::exit(kHostEnds); });
        });
        QCOMPARE(QCoreApplication::exec(), kHostEnds);
        QVERIFY(results[0] == 1 && results[1] == 1);
    }

    void EveryKindOpensOnNothing() {
        for (const int kind : {-2, -1, 0, 1, 2, 3, 4})
            QCOMPARE(With({u"OK"_s}, [kind] { return InputAPI().Prompt(kind, 3, {}); }), 1);
    }

    void RefusedAndMissingFiles() {
        const QTemporaryDir folder;
        QFile file(folder.filePath(u"été.dat"_s));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("MOIS =\nPLUIE =\n") > 0);
        file.close();
        const QByteArray path = file.fileName().toUtf8();

        const auto prompt = [&file] { return InputAPI().Prompt(0, 1, file.fileName()); };
        QCOMPARE(With({u"OK"_s}, prompt), 0);
        Request request = Changed(&Request::text, path.constData());
        request.kind = FUNCTIONEDITOR_ANNUAL;
        request.mode = FUNCTIONEDITOR_VIEW;
        QCOMPARE(Prompt({u"OK"_s}, request), FUNCTIONEDITOR_REFUSED);
        // A file that cannot be opened is no reason to end the dialog, nor is a later Open.
        QVERIFY(file.remove());
        QCOMPARE(With({u"OK"_s, u"1=2|Ouvrir"_s, {}, u"OK"_s}, prompt), 1);
    }

    // A file that is read, at the start or later, replaces what the caller handed over; edits do
    // not.
    void ListsHoldTheFileReadLast() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"sans-point"_s);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write("AZIMUT = 0 1\nHAUTEUR = 5 7.5\n") > 0);
        file.close();
        struct Case {
            int mode;
            QStringList windows;
            int result;
            bool reads;
        };
        const Case cases[] = {{3, {u" Débit|2=7|OK"_s}, 1, false},
                              {3, {u"1=7|Cancel"_s, u"Yes"_s}, 2, false},
                              {1, {u"1=2|OK"_s}, 1, true},
                              {3, {u"Ouvrir"_s, path, u"Cancel"_s, u"Yes"_s}, 2, true}};
        for (const auto& [mode, windows, result, reads] : cases) {
            QStringList times = {u"9"_s};
            QStringList values = {u"9"_s, u"8"_s};
            QStringList extras = {u"x"_s};
            QString name = u"Débit"_s;
            InputAPI editor;
            editor.m_pTimeList = &times;
            editor.m_pValueList = &values;
            editor.m_pExtraList = &extras;
            editor.m_pName = &name;
            const QString text = mode == 1 ? path : QString();
            QCOMPARE(With(windows, [&, mode = mode] { return editor.Prompt(-1, mode, text); }),
                     result);
            QCOMPARE(times.join(u'|'), reads ? u"0.00|1.00"_s : u"9"_s);
            QCOMPARE(values.join(u'|'), reads ? u"5.00|7.50"_s : u"9|8"_s);
            QCOMPARE(extras.isEmpty(), reads);
            QCOMPARE(name, u"Débit"_s);
        }
    }

    void OtherThreadsShowNothing() {
        int results[2] = {1, 1};
        std::thread([&results] {
            QObject here;  // where an event loop would run
            QMetaObject::invokeMethod(
                &here, [] { qFatal("a dialog in another thread"); }, Qt::QueuedConnection);
            results[0] = InputAPI().Prompt(-1, 3, {});
            Request request = EmptyRequest();
            results[1] = functioneditor_prompt(&request);
        }).join();
        QCOMPARE(results[0], -1);
        QCOMPARE(results[1], FUNCTIONEDITOR_NO_DIALOG);
    }

    void RowsComeBackAfterOk() {
        const char* const times[] = {"0", "1e0", "2"};
        const char* const values[] = {"1.50", nullptr, "3"};
        Rows rows;
        Request request = EmptyRequest();
        request.times = times;
        request.values = values;
        request.count = 3;
        request.on_row = KeepRow;
        request.user = &rows;
        QCOMPARE(Prompt({u"Cancel"_s, u"Yes"_s}, request), FUNCTIONEDITOR_CANCELLED);
        QVERIFY(rows.isEmpty());
        QCOMPARE(Prompt({u"3=4,25|OK"_s}, request), FUNCTIONEDITOR_OK);
        QCOMPARE(rows,
                 Rows({{u"0"_s, u"1.50"_s, {}}, {u"1e0"_s, {}, {}}, {u"2"_s, u"4.25"_s, {}}}));
    }

    // It is the host's code: what it throws is no reason to say that nothing was shown.
    void ACallbackMayThrow() {
        int calls = 0;
        Request request = Changed(&Request::user, &calls);
        request.kind = FUNCTIONEDITOR_DAILY;
        request.on_row = [](size_t, const char*, const char*, const char*, void* user) {
            ++*static_cast<int*>(user);
            throw std::runtime_error("the host's");
        };
        const int result = Prompt({u"OK"_s}, request);
        QCOMPARE(result, FUNCTIONEDITOR_ERROR_INTERNAL);
        QCOMPARE(calls, 1);
        QVERIFY(QByteArray(functioneditor_result_text(result)).contains("may have been shown"));
    }

    void HostOfTheFormerHeader() {
        Rows rows;
        const auto prompt = [&rows] { return prompt_of_former_host(KeepRow, &rows); };
        QCOMPARE(With({u"2=7|OK"_s}, prompt), FUNCTIONEDITOR_OK);
        QCOMPARE(rows, (Rows{{u"0"_s, u"1.50"_s, {}}, {u"2.5"_s, u"7"_s, {}}}));
    }

    // A daily profile is saved into a folder with a long title; the name that comes back is cut to
    // the caller's buffer between characters.
    void NamesAreCutBetweenCharacters() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"Data/Profils/Journalier/étés.dat"_s);
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        const QByteArray program_folder = folder.path().toUtf8();
        const std::pair<int, QByteArray> cases[] = {
            {7, "étés"}, {6, "été"}, {5, "ét"}, {2, ""}, {1, ""}};
        for (const auto& [size, expected] : cases) {
            QFile::remove(path);
            QByteArray name(size, '\0');
            Request request = Changed(&Request::program_folder, program_folder.constData());
            request.kind = FUNCTIONEDITOR_DAILY;
            request.name = name.data();
            request.name_size = static_cast<size_t>(size);
            QCOMPARE(Prompt({u"Enregistrer sous|OK"_s, path}, request), FUNCTIONEDITOR_OK);
            QVERIFY(QFile::exists(path));
            QCOMPARE(QByteArray(name.constData()), expected);
            QCOMPARE(request.name_length, size_t{6});
        }
    }

    void WrongRequests() {
        const char* const broken[] = {"\xC3"};
        char open_name[] = {'a', 'b'};
        const std::pair<int, Request> cases[] = {
            {FUNCTIONEDITOR_ERROR_REQUEST,
             Changed(&Request::size, FUNCTIONEDITOR_REQUEST_SIZE_0_1 - 1)},
            {FUNCTIONEDITOR_ERROR_KIND, Changed(&Request::kind, -2)},
            {FUNCTIONEDITOR_ERROR_KIND, Changed(&Request::kind, 4)},
            {FUNCTIONEDITOR_ERROR_MODE, Changed(&Request::mode, 0)},
            {FUNCTIONEDITOR_ERROR_MODE, Changed(&Request::mode, 4)},
            {FUNCTIONEDITOR_ERROR_ROWS, Changed(&Request::count, FUNCTIONEDITOR_MAX_ROWS + 1)},
            {FUNCTIONEDITOR_ERROR_NAME, Changed(&Request::name, open_name)},
            {FUNCTIONEDITOR_ERROR_NAME,  // has no end
             Changed(&Request::name_size, 2, Changed(&Request::name, open_name))},
            {FUNCTIONEDITOR_ERROR_ENCODING, Changed(&Request::text, "a\xFFz")},
            {FUNCTIONEDITOR_ERROR_ENCODING,
             Changed(&Request::count, 1, Changed(&Request::values, broken))}};
        for (const auto& [expected, wrong] : cases) {
            Request request = wrong;
            QCOMPARE(Prompt({}, request), expected);
            QVERIFY(functioneditor_result_text(expected) != functioneditor_result_text(-99));
        }
        QCOMPARE(functioneditor_prompt(nullptr), FUNCTIONEDITOR_ERROR_REQUEST);
    }
};

QTEST_APPLESS_MAIN(ModuleTest)
#include "ModuleTest.moc"
