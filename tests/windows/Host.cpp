// SPDX-License-Identifier: GPL-3.0-or-later
// A host on Windows: Host PROGRAM FILE KEEP
//
// Starts the program on the exchange file with a pipe as standard output that nobody reads, and
// waits for its end. Meanwhile it keeps the file open as KEEP says: "nothing", "shared" (others may
// read and write), or "refused" (others may read), which ends when the file FILE.let-go appears.
// Ends with the status of the program.

#include <cstdio>
#include <string>
#include <string_view>

#include <windows.h>

#include <shellapi.h>

namespace {

constexpr DWORD kPause = 20;  // ms

// Small, as hosts make it that do not think of it.
constexpr DWORD kPipeSize = 4096;

HANDLE Keep(const std::wstring& file, std::wstring_view how) {
    if (how == L"nothing")
        return INVALID_HANDLE_VALUE;
    const DWORD share = how == L"shared" ? FILE_SHARE_READ | FILE_SHARE_WRITE : FILE_SHARE_READ;
    return CreateFileW(file.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr);
}

int Fail(const char* what) {
    std::fprintf(stderr, "%s: error %lu\n", what, GetLastError());
    return 100;
}

}  // namespace

int main() {
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    if (count != 4)
        return Fail("usage: Host PROGRAM FILE nothing|shared|refused");
    const std::wstring program = words[1];
    const std::wstring file = words[2];

    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    HANDLE ours = nullptr;
    HANDLE theirs = nullptr;
    if (CreatePipe(&ours, &theirs, &inherited, kPipeSize) == 0)
        return Fail("no pipe");
    SetHandleInformation(ours, HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = theirs;
    start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    std::wstring line = L"\"" + program + L"\" -quiet \"" + file + L"\"";
    PROCESS_INFORMATION process = {};
    if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                       &start, &process) == 0)
        return Fail("the program does not start");
    CloseHandle(theirs);

    const HANDLE kept = Keep(file, words[3]);
    const std::wstring let_go = file + L".let-go";
    bool keeps = kept != INVALID_HANDLE_VALUE;
    while (WaitForSingleObject(process.hProcess, kPause) == WAIT_TIMEOUT) {
        if (keeps && GetFileAttributesW(let_go.c_str()) != INVALID_FILE_ATTRIBUTES)
            keeps = CloseHandle(kept) == 0;
    }
    DWORD status = 0;
    GetExitCodeProcess(process.hProcess, &status);
    return static_cast<int>(status);
}
