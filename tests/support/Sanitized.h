// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#ifdef __SANITIZE_ADDRESS__
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif
