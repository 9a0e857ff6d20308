// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <utility>

/// The process's handler of this type; at first an empty one.
template <typename Handler>
Handler& CurrentHandler() {
    static Handler handler;
    return handler;
}

/// Installs `handler` and returns the previous one.
template <typename Handler>
Handler ExchangeHandler(Handler handler) {
    return std::exchange(CurrentHandler<Handler>(), std::move(handler));
}
