// SPDX-License-Identifier: GPL-3.0-or-later
#include "functioneditor.h"

#include "app/DialogRun.h"
#include "app/FileCheck.h"

#include <QStringDecoder>

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace {

// The size of the request's first version, which every caller has.
constexpr size_t kSmallestRequest = FUNCTIONEDITOR_REQUEST_SIZE_0_1;

struct RequestError {
    int code;
};

QString TextFrom(const char* utf8) {
    if (utf8 == nullptr)
        return {};
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder(utf8);
    if (decoder.hasError())
        throw RequestError{FUNCTIONEDITOR_ERROR_ENCODING};
    return text;
}

QStringList ListFrom(const char* const* texts, size_t count) {
    QStringList list;
    if (texts == nullptr)
        return list;
    list.reserve(static_cast<qsizetype>(count));
    for (size_t i = 0; i < count; ++i)
        list.append(TextFrom(texts[i]));
    return list;
}

// The request with decoded texts. Throws the result code of the first fault in it.
struct Request {
    explicit Request(const functioneditor_request* request) {
        if (request == nullptr || request->size < kSmallestRequest)
            throw RequestError{FUNCTIONEDITOR_ERROR_REQUEST};
        if (request->kind < FUNCTIONEDITOR_FUNCTION || request->kind > FUNCTIONEDITOR_DAILY)
            throw RequestError{FUNCTIONEDITOR_ERROR_KIND};
        if (request->mode < FUNCTIONEDITOR_OPEN || request->mode > FUNCTIONEDITOR_EDIT)
            throw RequestError{FUNCTIONEDITOR_ERROR_MODE};
        if (request->count > FUNCTIONEDITOR_MAX_ROWS)
            throw RequestError{FUNCTIONEDITOR_ERROR_ROWS};
        if (request->name != nullptr &&
            std::memchr(request->name, '\0', request->name_size) == nullptr)
            throw RequestError{FUNCTIONEDITOR_ERROR_NAME};
        text = TextFrom(request->text);
        program_folder = TextFrom(request->program_folder);
        name = TextFrom(request->name);
        times = ListFrom(request->times, request->count);
        values = ListFrom(request->values, request->count);
        names = ListFrom(request->names, request->count);
        if (request->size > kSmallestRequest)
            parent_window = request->parent_window;
    }

    QString text;
    QString program_folder;
    QString name;
    QStringList times;
    QStringList values;
    QStringList names;
    WindowId parent_window = 0;
};

void StoreName(const QString& name, functioneditor_request* request) {
    const QByteArray utf8 = name.toUtf8();
    request->name_length = static_cast<size_t>(utf8.size());
    if (request->name == nullptr)
        return;
    size_t length = std::min(request->name_length, request->name_size - 1);
    const auto continues = [&](size_t at) {
        return at < request->name_length &&
               (static_cast<unsigned char>(utf8[static_cast<qsizetype>(at)]) & 0xC0U) == 0x80U;
    };
    while (length > 0 && continues(length))
        --length;
    std::memcpy(request->name, utf8.constData(), length);
    request->name[length] = '\0';
}

int Prompt(functioneditor_request* request) {
    Request decoded(request);
    MakeApplication();
    if (!CanShowDialog())
        return FUNCTIONEDITOR_NO_DIALOG;
    SessionSetup setup;
    setup.kind = static_cast<ProfileKind>(request->kind);
    setup.mode = static_cast<DisplayMode>(request->mode);
    setup.text = decoded.text;
    setup.name = std::move(decoded.name);
    setup.times = std::move(decoded.times);
    setup.values = std::move(decoded.values);
    setup.names = std::move(decoded.names);
    if (!decoded.program_folder.isEmpty())
        setup.folders = ProfileFolders(decoded.program_folder);

    const DialogOutcome outcome = RunDialog(std::move(setup), decoded.parent_window);
    StoreName(outcome.name, request);
    for (qsizetype row = 0; request->on_row != nullptr && row < outcome.labels.size(); ++row)
        request->on_row(static_cast<size_t>(row), outcome.labels[row].toUtf8().constData(),
                        outcome.values.value(row).toUtf8().constData(),
                        outcome.names.value(row).toUtf8().constData(), request->user);
    return outcome.result;
}

}  // namespace

int functioneditor_prompt(functioneditor_request* request) {
    try {
        return Prompt(request);
    } catch (const RequestError& error) {
        return error.code;
    } catch (...) {
        return FUNCTIONEDITOR_ERROR_INTERNAL;
    }
}

int functioneditor_check(const char* path, functioneditor_fault on_fault, void* user) {
    if (path == nullptr)
        return FUNCTIONEDITOR_ERROR_REQUEST;
    try {
        const FileCheck check =
            CheckExchangeFile(TextFrom(path), [&](qsizetype line, const QString& text) {
                if (on_fault != nullptr)
                    on_fault(static_cast<size_t>(line), text.toUtf8().constData(), user);
            });
        constexpr qsizetype kMax = std::numeric_limits<int>::max();
        return check.readable ? static_cast<int>(std::min(check.faults, kMax))
                              : FUNCTIONEDITOR_ERROR_FILE;
    } catch (const RequestError& error) {
        return error.code;
    } catch (...) {
        return FUNCTIONEDITOR_ERROR_INTERNAL;
    }
}

const char* functioneditor_version() {
    return FUNCTION_EDITOR_VERSION;
}

const char* functioneditor_result_text(int result) {
    switch (result) {
        case FUNCTIONEDITOR_OK: return "The user pressed OK.";
        case FUNCTIONEDITOR_CANCELLED: return "The user cancelled.";
        case FUNCTIONEDITOR_REFUSED: return "The file was refused or not chosen.";
        case FUNCTIONEDITOR_NO_DIALOG:
            return "No dialog can be shown: there is no display, or this is not the thread for "
                   "windows.";
        case FUNCTIONEDITOR_ERROR_REQUEST: return "There is no request, or its size is wrong.";
        case FUNCTIONEDITOR_ERROR_KIND: return "There is no such kind of profile.";
        case FUNCTIONEDITOR_ERROR_MODE: return "There is no such display mode.";
        case FUNCTIONEDITOR_ERROR_ROWS: return "There are too many rows.";
        case FUNCTIONEDITOR_ERROR_NAME: return "The name does not end within its buffer.";
        case FUNCTIONEDITOR_ERROR_ENCODING: return "A text is not valid UTF-8.";
        case FUNCTIONEDITOR_ERROR_INTERNAL:
            return "The editor ran out of memory or failed, or the row callback threw. The dialog "
                   "may have been shown.";
        case FUNCTIONEDITOR_ERROR_FILE: return "The file cannot be read.";
        default: return "This is no result of the editor.";
    }
}
