// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

/// A colour without a toolkit: red, green and blue, 0 to 255 each.
struct Colour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    friend bool operator==(const Colour&, const Colour&) = default;
};
