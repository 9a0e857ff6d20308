// SPDX-License-Identifier: GPL-3.0-or-later
/* The arguments of the program in UTF-8, the encoding of the module. Windows hands them over in the
 * user's code page, which need not hold all characters; elsewhere they are UTF-8 already. */
#ifndef ARGUMENTS_H
#define ARGUMENTS_H

#ifdef _WIN32

#include <stdlib.h>

#include <windows.h>

#include <shellapi.h>

/* Memory that lives as long as the process; NULL when there is not enough. */
static inline char** utf8_arguments(int* argc, char** argv) {
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), argc);
    char** const texts = (char**)calloc((size_t)*argc + 1, sizeof *texts);
    (void)argv;
    SetConsoleOutputCP(CP_UTF8);
    for (int i = 0; wide != NULL && texts != NULL && i < *argc; ++i) {
        const int size = WideCharToMultiByte(CP_UTF8, 0, wide[i], -1, NULL, 0, NULL, NULL);
        texts[i] = (char*)malloc((size_t)size);
        if (texts[i] == NULL)
            return NULL;
        WideCharToMultiByte(CP_UTF8, 0, wide[i], -1, texts[i], size, NULL, NULL);
    }
    return wide != NULL ? texts : NULL;
}

#else

/* NOLINTNEXTLINE(readability-non-const-parameter): Windows counts anew. */
static inline char** utf8_arguments(int* argc, char** argv) {
    (void)argc;
    return argv;
}

#endif

#endif
