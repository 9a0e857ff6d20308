// SPDX-License-Identifier: GPL-3.0-or-later
/* The function editor's dialog for programs in C, and in any language that can call C.
 *
 * All texts are UTF-8 and end with a zero byte. */
#ifndef FUNCTIONEDITOR_H
#define FUNCTIONEDITOR_H

#include <stddef.h>

#include "functioneditor_export.h"

#ifdef __cplusplus
extern "C" {
#endif

enum functioneditor_kind {
    FUNCTIONEDITOR_FUNCTION = -1, /* points of a function: any number of times and values */
    FUNCTIONEDITOR_ANNUAL = 0,    /* 12 coefficients */
    FUNCTIONEDITOR_MONTHLY = 1,   /* 12 values with names of daily profiles */
    FUNCTIONEDITOR_WEEKLY = 2,    /* 7 values with names of daily profiles */
    FUNCTIONEDITOR_DAILY = 3      /* 24 coefficients */
};

enum functioneditor_mode {
    FUNCTIONEDITOR_OPEN = 1, /* edit the file `text` */
    FUNCTIONEDITOR_VIEW = 2, /* show the file `text`, without a chart */
    FUNCTIONEDITOR_EDIT =
        3 /* edit the rows handed over; a weekly profile starts from its defaults */
};

/* What functioneditor_prompt returns. */
enum functioneditor_result {
    FUNCTIONEDITOR_OK = 1,
    FUNCTIONEDITOR_CANCELLED = 2,
    FUNCTIONEDITOR_REFUSED = 0,         /* the file is not valid, or its choice was cancelled */
    FUNCTIONEDITOR_NO_DIALOG = -1,      /* no display, or not the thread for windows */
    FUNCTIONEDITOR_ERROR_REQUEST = -2,  /* no request, or one of a wrong size */
    FUNCTIONEDITOR_ERROR_KIND = -3,     /* no such kind */
    FUNCTIONEDITOR_ERROR_MODE = -4,     /* no such mode */
    FUNCTIONEDITOR_ERROR_ROWS = -5,     /* more rows than FUNCTIONEDITOR_MAX_ROWS */
    FUNCTIONEDITOR_ERROR_NAME = -6,     /* the name does not end within its buffer */
    FUNCTIONEDITOR_ERROR_ENCODING = -7, /* a text is not valid UTF-8 */
    FUNCTIONEDITOR_ERROR_INTERNAL = -8  /* out of memory, a fault of the editor, or on_row threw */
};

#define FUNCTIONEDITOR_MAX_ROWS 10000000

/* A buffer of this size holds the title of any file. */
#define FUNCTIONEDITOR_NAME_SIZE 1024

/* Called once a row, from row 0 on, after the user pressed OK and before functioneditor_prompt
 * returns. `label` is the time of a point or the row's label, `name` the daily profile ("" for
 * kinds without). The texts are valid during the call only. */
typedef void (*functioneditor_row)(size_t row, const char* label, const char* value,
                                   const char* name, void* user);

/* Set all of it to zero, then `size` and what is needed. Later versions append members. */
typedef struct functioneditor_request {
    size_t size; /* sizeof(functioneditor_request) as the caller was compiled */
    int kind;    /* functioneditor_kind */
    int mode;    /* functioneditor_mode */

    const char* text;           /* path of the file to start with; NULL or "" asks the user */
    const char* program_folder; /* holds the folder "Data" of the profiles; NULL or "" for the
                                   folder of the running program */

    /* The profile's name, in and out. NULL: no name goes in and none comes out. A name that does
     * not fit is cut after a whole character; the buffer always holds a terminated text. */
    char* name;
    size_t name_size;   /* bytes of the buffer, the zero byte included */
    size_t name_length; /* out: bytes of the whole name without a zero byte; `name_size` or more
                           when the name was cut. Set whenever a dialog was shown. */

    /* The rows to edit in mode FUNCTIONEDITOR_EDIT: `count` texts each. A NULL array counts as an
     * empty one, a NULL text as "". A function has as many points as times and values both have. */
    const char* const* times;
    const char* const* values;
    const char* const* names; /* daily profiles of monthly rows */
    size_t count;

    functioneditor_row on_row; /* may be NULL */
    void* user;                /* handed to on_row as it is */
} functioneditor_request;

/* Shows the dialog and returns once the user has closed it: a functioneditor_result. The first call
 * makes its thread the one for windows, unless the process has one already; call from that thread
 * only. With an error nothing was shown and nothing changed, except with
 * FUNCTIONEDITOR_ERROR_INTERNAL: the user may have seen the dialog and saved files, and `name` and
 * `name_length` may be set. No exception leaves it; one that on_row throws ends the calls of it. */
FUNCTIONEDITOR_EXPORT int functioneditor_prompt(functioneditor_request* request);

/* An English sentence about a functioneditor_result, for logs. Never NULL; not to be freed. */
FUNCTIONEDITOR_EXPORT const char* functioneditor_result_text(int result);

#ifdef __cplusplus
}
#endif

#endif
