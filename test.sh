#!/bin/bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds the function editor as users run it and runs all its tests: ./test.sh [-DOPTION=VALUE]...
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

tools/install-packages test
cmake --preset release "$@" </dev/null
cmake --build --preset release </dev/null
ctest --preset release --parallel "$(nproc)" </dev/null
