#include "app/CPlugApp.h"
#include "app/QuickStart.h"

#ifdef Q_OS_UNIX
#include <csignal>
#endif

int main(int argc, char* argv[]) {
#ifdef Q_OS_UNIX
    // A host that closed its end of our standard output must not end the editor.
    std::signal(SIGPIPE, SIG_IGN);
    // Nor must a limit on the size of files: the write fails with its message.
    std::signal(SIGXFSZ, SIG_IGN);
#endif
    GrowHeapInLargeSteps();
    FontReading fonts;
    CPlugApp app(argc, argv);
    fonts.Wait();
    app.InitInstance();
    return 0;
}
