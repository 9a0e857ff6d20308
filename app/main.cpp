// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CPlugApp.h"
#include "app/CommandLine.h"
#include "app/StandardStreams.h"
#include "base/Message.h"

#include <QMutex>
#include <QStringList>

#include <cstdlib>
#include <exception>
#include <new>
#include <optional>

#ifdef Q_OS_UNIX
#include <csignal>
#endif

using namespace Qt::StringLiterals;

namespace {

/// Collects the toolkit's messages while it starts. Without a usable display the toolkit ends the
/// process: then one line says so and the exit status is 1. Else the messages are written at the
/// end.
class StartMessages {
public:
    StartMessages() { qInstallMessageHandler(Take); }
    ~StartMessages() {
        qInstallMessageHandler(nullptr);
        for (const QString& message : s_messages)
            WriteError(message);
    }
    StartMessages(const StartMessages&) = delete;
    StartMessages& operator=(const StartMessages&) = delete;

private:
    static void Take(QtMsgType type, const QMessageLogContext& context, const QString& text) {
        const QMutexLocker lock(&s_mutex);
        if (type != QtFatalMsg) {
            s_messages.append(qFormatLogMessage(type, context, text));
            return;
        }
        WriteError(u"No window can be shown, the exchange file is unchanged. "_s +
                   s_messages.filter(u"qt.qpa"_s).value(0, text).simplified());
        std::_Exit(EXIT_FAILURE);
    }

    static inline QMutex s_mutex;
    static inline QStringList s_messages;
};

const QString kNoMemory = u"There is not enough memory, the exchange file is unchanged."_s;

// The toolkit does not pass on every exception.
[[noreturn]] void EndWithoutMemory() {
    try {
        if (const std::exception_ptr error = std::current_exception())
            std::rethrow_exception(error);
    } catch (const std::bad_alloc&) {
        WriteError(kNoMemory);
        std::_Exit(EXIT_FAILURE);
    } catch (...) {
    }
    std::abort();
}

}  // namespace

int main(int argc, char* argv[]) {
    if (const std::optional<int> status = RunWithoutWindow(ProgramArguments(argc, argv)))
        return *status;
    PrepareStandardStreams();
#ifdef Q_OS_UNIX
    // A host that closed its end of our standard output must not end the editor.
    std::signal(SIGPIPE, SIG_IGN);
    // Nor must a limit on file sizes: the write fails, and a message says so.
    std::signal(SIGXFSZ, SIG_IGN);
    // Nor must a terminal that stops background programs which write to it.
    std::signal(SIGTTOU, SIG_IGN);
#endif
    std::set_terminate(EndWithoutMemory);
    std::optional<StartMessages> messages(std::in_place);
    CPlugApp app(argc, argv);
    messages.reset();
    try {
        app.InitInstance();
    } catch (const std::bad_alloc&) {
        WriteError(kNoMemory);
        ShowMessage(kNoMemory);
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
