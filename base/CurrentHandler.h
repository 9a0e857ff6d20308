// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <utility>

/// The handler of this type that is installed in the process; an empty one at first.
template <typename Handler>
Handler& CurrentHandler() {
    static Handler handler;
    return handler;
}

/// Installs `handler` and returns the one that was there before.
template <typename Handler>
Handler ExchangeHandler(Handler handler) {
    return std::exchange(CurrentHandler<Handler>(), std::move(handler));
}
