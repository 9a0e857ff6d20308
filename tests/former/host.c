// SPDX-License-Identifier: GPL-3.0-or-later
/* A host that was compiled against the header of version 0.1, kept here as it was. */

#include "functioneditor.h"

#include <stdlib.h>

/* Edits two points. Checkers of memory see when the module touches what follows the request. */
int prompt_of_former_host(functioneditor_row on_row, void* user) {
    static const char* const times[] = {"0", "2.5"};
    static const char* const values[] = {"1.50", "4"};
    functioneditor_request* const request = calloc(1, sizeof *request);
    if (request == NULL)
        return FUNCTIONEDITOR_ERROR_INTERNAL;
    request->size = sizeof *request;
    request->kind = FUNCTIONEDITOR_FUNCTION;
    request->mode = FUNCTIONEDITOR_EDIT;
    request->times = times;
    request->values = values;
    request->count = sizeof times / sizeof times[0];
    request->on_row = on_row;
    request->user = user;
    const int result = functioneditor_prompt(request);
    free(request);
    return result;
}
