// SPDX-License-Identifier: GPL-3.0-or-later
/* A host in C: shows the dialog through the C entry and prints what came back.
 *
 * usage: host-c KIND MODE [--name NAME] [--file PATH] [--data FOLDER] [TIME=VALUE[=NAME]]... */

#include "arguments.h"

#include <functioneditor.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static const char* const kinds[] = {"function", "annual", "monthly", "weekly", "daily"};
static const char* const modes[] = {"open", "view", "edit"};

/* The index of `word` in `words`, -1 when it is not there. */
static int find(const char* word, const char* const* words, size_t count) {
    for (size_t i = 0; i < count; ++i) {
        if (strcmp(word, words[i]) == 0)
            return (int)i;
    }
    return -1;
}

static void print_row(size_t row, const char* label, const char* value, const char* name,
                      void* user) {
    fprintf((FILE*)user, "row %zu: %s | %s | %s\n", row + 1, label, value, name);
}

static int usage(void) {
    fprintf(stderr,
            "usage: host-c function|annual|monthly|weekly|daily open|view|edit\n"
            "              [--name NAME] [--file PATH] [--data FOLDER]\n"
            "              [TIME=VALUE[=NAME]]...\n");
    return 2;
}

/* Cuts `text` at the first "=" and returns what follows, "" without one. */
static char* cut(char* text) {
    char* const equals = strchr(text, '=');
    if (equals == NULL)
        return text + strlen(text);
    *equals = '\0';
    return equals + 1;
}

int main(int argc, char* argv[]) {
    argv = utf8_arguments(&argc, argv);
    if (argv == NULL || argc < 3)
        return usage();
    const int kind = find(argv[1], kinds, sizeof kinds / sizeof kinds[0]);
    const int mode = find(argv[2], modes, sizeof modes / sizeof modes[0]);
    if (kind < 0 || mode < 0)
        return usage();

    /* There are fewer rows than arguments. */
    const char** const columns = calloc(3 * (size_t)argc, sizeof *columns);
    if (columns == NULL)
        return 1;
    const char** const times = columns;
    const char** const values = columns + argc;
    const char** const names = values + argc;

    char name[FUNCTIONEDITOR_NAME_SIZE] = "";
    functioneditor_request request = {0};
    request.size = sizeof request;
    request.kind = FUNCTIONEDITOR_FUNCTION + kind;
    request.mode = FUNCTIONEDITOR_OPEN + mode;
    request.name = name;
    request.name_size = sizeof name;
    request.times = times;
    request.values = values;
    request.names = names;
    request.on_row = print_row;
    request.user = stdout;

    int status = 0;
    for (int i = 3; i < argc && status == 0; ++i) {
        if (strcmp(argv[i], "--name") == 0 && i + 1 < argc) {
            snprintf(name, sizeof name, "%s", argv[++i]);
        } else if (strcmp(argv[i], "--file") == 0 && i + 1 < argc) {
            request.text = argv[++i];
        } else if (strcmp(argv[i], "--data") == 0 && i + 1 < argc) {
            request.program_folder = argv[++i];
        } else if (strchr(argv[i], '=') != NULL) {
            times[request.count] = argv[i];
            char* const value = cut(argv[i]);
            values[request.count] = value;
            names[request.count] = cut(value);
            ++request.count;
        } else {
            status = usage();
        }
    }

    if (status == 0) {
        const int result = functioneditor_prompt(&request);
        printf("result: %d\nname: %s\n", result, name);
        if (result < 0) {
            fprintf(stderr, "%s\n", functioneditor_result_text(result));
            status = 1;
        }
    }
    free(columns);
    return status;
}
