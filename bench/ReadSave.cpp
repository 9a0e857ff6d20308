// SPDX-License-Identifier: GPL-3.0-or-later
// Reads an exchange file and saves it again, without a window: ReadSave FILE
// Tools that count instructions count those of ReadAndSave only.

#include "app/CPlugExchangeFile.h"
#include "app/CPlugParameters.h"

#include <QFile>

extern "C" int ReadAndSave(const char* path);

// Without C++ decoration, so that a counting tool can be told its name; returns the number of
// points.
extern "C" __attribute__((noinline)) int ReadAndSave(const char* path) {
    CPlugExchangeFile file(QFile::decodeName(path));
    CPlugParameters parameters;
    parameters.setParameters(&file);
    parameters.writeFile();
    return static_cast<int>(parameters.getPointCount());
}

int main(int argc, char* argv[]) {
    return argc == 2 && ReadAndSave(argv[1]) > 0 ? 0 : 1;
}
