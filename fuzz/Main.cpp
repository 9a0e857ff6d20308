// SPDX-License-Identifier: GPL-3.0-or-later
// Runs a target without the fuzzer: all inputs in files first, then COUNT that are made of them.
// fuzz_TARGET COUNT FOLDER...

#include <QByteArray>
#include <QDirIterator>
#include <QFile>
#include <QRandomGenerator>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

QByteArray g_input;

void TellInput(int) {
    std::fprintf(stderr, "Input: %s\n", g_input.toPercentEncoding(" !\"=,|").constData());
}

void Run(const QByteArray& input) {
    g_input = input;
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(input.constData()),
                           static_cast<size_t>(input.size()));
}

QByteArray Changed(QByteArray input, const QList<QByteArray>& all, QRandomGenerator& random) {
    static const QByteArray kLetters = "0123456789.,-+e \t\r\n!\"='\\/abdhirtux\x80\xe9";
    const auto letter = [&] { return kLetters[random.bounded(kLetters.size())]; };
    for (int changes = random.bounded(1, 6); changes > 0; --changes) {
        const qsizetype at = random.bounded(input.size() + 1);
        const QByteArray& other = all[random.bounded(all.size())];
        switch (random.bounded(4)) {
            case 0: input.insert(at, letter()); break;
            case 1: input.remove(at, random.bounded(1, 8)); break;
            case 2: input.replace(at, 1, QByteArray(1, letter())); break;
            default: input = input.first(at) + other.sliced(random.bounded(other.size() + 1));
        }
    }
    return input.left(4096);
}

}  // namespace

int main(int argc, char** argv) {
    std::signal(SIGABRT, TellInput);
    QList<QByteArray> inputs;
    for (int i = 2; i < argc; ++i) {
        QDirIterator files(QFile::decodeName(argv[i]), QDir::Files);
        while (files.hasNext()) {
            QFile file(files.next());
            if (file.open(QIODevice::ReadOnly))
                inputs.append(file.readAll());
        }
    }
    if (inputs.isEmpty())
        return EXIT_FAILURE;
    for (const QByteArray& input : inputs)
        Run(input);
    QRandomGenerator random(1);
    for (int left = std::atoi(argv[1]); left > 0; --left)
        Run(Changed(inputs[random.bounded(inputs.size())], inputs, random));
    return EXIT_SUCCESS;
}
