// SPDX-License-Identifier: GPL-3.0-or-later
// Time of the operations without a window, beside plain reading and writing of the same bytes. The
// argument of a benchmark is the number of points.

#include "BenchPoints.h"
#include "app/CPlugExchangeFile.h"
#include "app/CPlugParameters.h"
#include "base/FileReplace.h"
#include "grid/PasteStore.h"
#include "profiles/Coefficients.h"
#include "profiles/EditHistory.h"
#include "profiles/InsertPoints.h"
#include "profiles/PointFile.h"
#include "profiles/PointSeries.h"
#include "profiles/ProfileSession.h"
#include "profiles/RowCalculation.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <cstdio>
#include <iostream>
#include <memory>
#include <numeric>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int kMinPoints = 1'000;
constexpr int kMaxPoints = 1'000'000;

int PointsOf(const benchmark::State& state) {
    return static_cast<int>(state.range(0));
}

void CountPoints(benchmark::State& state) {
    state.SetComplexityN(state.range(0));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// An exchange file on the disk.
struct FileOnDisk {
    explicit FileOnDisk(int points)
        : content(ExchangeFileOf(points)), path(folder.filePath(u"exchange.txt"_s)) {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("The file for the measurement cannot be written.");
    }

    QTemporaryDir folder;
    QByteArray content;
    QString path;
};

// A function's session filled from lists.
struct FilledSession {
    explicit FilledSession(int count) : points(count) {
        SessionSetup setup;
        setup.times = points.times;
        setup.values = points.values;
        session = std::make_unique<ProfileSession>(setup);
        session->InitialFill();
    }

    BenchPoints points;
    std::unique_ptr<ProfileSession> session;
};

void SplitLines(benchmark::State& state) {
    const QList<QByteArray> lines = ExchangeFileOf(PointsOf(state)).split('\n');
    for (auto _ : state) {
        qsizetype count = 0;
        for (const QByteArray& line : lines)
            count += CPlugInstruction(line).values().size();
        benchmark::DoNotOptimize(count);
    }
    CountPoints(state);
}

// From the path to the points, and until all of it is freed. The trace goes to /dev/null.
void ReadFile(benchmark::State& state) {
    const FileOnDisk disk(PointsOf(state));
    for (auto _ : state) {
        CPlugExchangeFile file(disk.path);
        CPlugParameters parameters;
        parameters.setParameters(&file);
        benchmark::DoNotOptimize(parameters.getPointCount());
    }
    CountPoints(state);
}

void ReadBytes(benchmark::State& state) {
    const FileOnDisk disk(PointsOf(state));
    for (auto _ : state) {
        QFile file(disk.path);
        benchmark::DoNotOptimize(file.open(QIODevice::ReadOnly) ? file.readAll().size() : 0);
    }
    CountPoints(state);
}

// From the points to the file in its place.
void WriteFile(benchmark::State& state) {
    const BenchPoints points(PointsOf(state));
    const FileOnDisk disk(PointsOf(state));
    CPlugExchangeFile file(disk.path);
    CPlugParameters parameters;
    parameters.setParameters(&file);
    for (auto _ : state) {
        parameters.clearPoints();
        for (qsizetype i = 0; i < points.times.size(); ++i)
            parameters.addPoint({points.times[i], points.values[i]});
        parameters.writeFile();
    }
    CountPoints(state);
}

void WriteBytesAndSync(benchmark::State& state) {
    const FileOnDisk disk(PointsOf(state));
    for (auto _ : state) {
        QFile file(disk.path + u".new"_s);
        if (!file.open(QIODevice::WriteOnly) || file.write(disk.content) < 0 || !file.flush() ||
            fsync(file.handle()) != 0)
            state.SkipWithError("cannot write");
    }
    CountPoints(state);
}

void FillSession(benchmark::State& state) {
    BenchPoints points(PointsOf(state));
    SessionSetup setup;
    setup.times = points.times;
    setup.values = points.values;
    for (auto _ : state) {
        ProfileSession session(setup);
        benchmark::DoNotOptimize(session.InitialFill());
    }
    CountPoints(state);
}

void EnterValue(benchmark::State& state) {
    const FilledSession filled(PointsOf(state));
    const std::array texts = {u"1.5"_s, u"2.5"_s};
    size_t next = 0;
    for (auto _ : state)
        filled.session->EnterValue(PointsOf(state) / 2, texts[next++ % texts.size()]);
    state.SetComplexityN(state.range(0));
}

// The first point moves behind all others, then back.
void EnterTimeOfMovedRow(benchmark::State& state) {
    const FilledSession filled(PointsOf(state));
    const int count = PointsOf(state);
    bool forward = true;
    for (auto _ : state) {
        filled.session->EnterTime(forward ? 1 : count, forward ? count : 1,
                                  forward ? u"2000000"_s : u"0"_s);
        forward = !forward;
    }
    CountPoints(state);
}

void UndoAndRedoMove(benchmark::State& state) {
    const FilledSession filled(PointsOf(state));
    filled.session->EnterTime(1, PointsOf(state), u"2000000"_s);
    for (auto _ : state) {
        filled.session->Undo();
        filled.session->Redo();
    }
    CountPoints(state);
}

void InsertAndRemovePoint(benchmark::State& state) {
    const FilledSession filled(PointsOf(state));
    const int row = PointsOf(state) / 2;
    for (auto _ : state) {
        filled.session->InsertPoint(row, u"0.5"_s, u"1"_s);
        filled.session->RemoveRows({row});
    }
    CountPoints(state);
}

void RemoveEverySecondRow(benchmark::State& state) {
    QList<int> rows;
    for (int row = 1; row < PointsOf(state); row += 2)
        rows.append(row);
    for (auto _ : state) {
        state.PauseTiming();
        auto filled = std::make_unique<FilledSession>(PointsOf(state));
        state.ResumeTiming();
        filled->session->RemoveRows(rows);
        state.PauseTiming();
        filled.reset();
        state.ResumeTiming();
    }
    CountPoints(state);
}

// A whole column at once. The rows stand at 0, 1, 2, ...; the texts are other numbers in the given
// order.
enum class PasteOrder { Rising, Falling, Shuffled };

void Paste(benchmark::State& state, int column, PasteOrder order) {
    QStringList texts;
    for (int i = 0; i < PointsOf(state); ++i)
        texts.append(QString::number(i) + u".5"_s);
    if (order == PasteOrder::Falling)
        std::reverse(texts.begin(), texts.end());
    if (order == PasteOrder::Shuffled)
        texts = Shuffled(texts);
    QList<QStringList> cells;
    for (const QString& text : std::as_const(texts))
        cells.append({text});
    for (auto _ : state) {
        state.PauseTiming();
        auto filled = std::make_unique<FilledSession>(PointsOf(state));
        state.ResumeTiming();
        StorePaste(*filled->session, cells, 1, column, PasteSource::Foreign);
        state.PauseTiming();
        filled.reset();
        state.ResumeTiming();
    }
    CountPoints(state);
}

// The points' lines, in an order that jumps about.
QStringList PointLines(const BenchPoints& points, QChar separator) {
    QStringList lines;
    for (qsizetype i = 0; i < points.times.size(); ++i)
        lines.append(points.times[i] + separator + points.values[i]);
    return Shuffled(lines);
}

// As many points as there are already, from the text of a clipboard to the new columns.
void InsertPastedPoints(benchmark::State& state) {
    const BenchPoints present(PointsOf(state));
    const QString text = PointLines(present, u'\t').join(u'\n');
    for (auto _ : state) {
        const PointReading pasted = ReadPastedPoints(text, present.times);
        benchmark::DoNotOptimize(
            InsertPoints({present.times, present.values}, pasted.points).rows.size());
    }
    CountPoints(state);
}

void ImportPoints(benchmark::State& state) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"points.csv"_s);
    QString text = PointLines(BenchPoints(PointsOf(state)), u';').join(u"\r\n"_s);
    if (!ReplaceFile(path, text.replace(u'.', u',').toUtf8()))
        qFatal("The file for the measurement cannot be written.");
    for (auto _ : state) {
        const PointFile file = PointFile::Open(path);
        benchmark::DoNotOptimize(
            file.Read(file.likelyColumns(), [](int) { return true; }).points.times.size());
    }
    CountPoints(state);
}

QList<int> AllRows(int points) {
    QList<int> rows(points);
    std::iota(rows.begin(), rows.end(), 1);
    return rows;
}

// What works on all rows at once; `edit` gets the number of the iteration, to change something.
template <typename Edit>
void AllAtOnce(benchmark::State& state, const Edit& edit) {
    const FilledSession filled(PointsOf(state));
    const QList<int> rows = AllRows(PointsOf(state));
    for (int count = 0; auto _ : state)
        edit(*filled.session, rows, count++);
    CountPoints(state);
}

void Multiply(ProfileSession& session, const QList<int>& rows, int count) {
    const double factor = count % 2 == 0 ? 1.1 : 1.0 / 1.1;
    CalculateRows(session, ProfileTable::kValueColumn, {Operation::Multiply, factor}, rows);
}

void FillAndReturn(ProfileSession& session, const QList<int>& rows, int) {
    FillRows(session, rows);
    session.ReturnToStart();
}

// A sine of as many points as there are.
void Replace(ProfileSession& session, const QList<int>& rows, int count) {
    const auto points = static_cast<int>(rows.size());
    const PointTexts series =
        MakeSeries({.count = points, .shape = SeriesShape::Sine, .a = 1.0 * count, .b = 2.0})
            .value();
    session.ReplaceRows(series.times, series.values);
}

void Rebalance(benchmark::State& state, ProfileKind kind) {
    QStringList column(Describe(kind).rows, u"1"_s);
    float value = 0.5F;
    for (auto _ : state) {
        column = SettleRemainder(kind, RebalanceCoefficients(kind, column, 3, value));
        value = 2.0F - value;
    }
}

void HistoryStepUndoRedo(benchmark::State& state) {
    EditHistory history(ProfileKind::Function);
    HistoryStep step;
    step.before = {4, u"4"_s, u"10"_s, {}};
    step.after = {7, u"7.5"_s, u"12"_s, {}};
    for (auto _ : state) {
        history.PushStep(step);
        benchmark::DoNotOptimize(history.UndoStep());
        benchmark::DoNotOptimize(history.RedoStep());
    }
}

void HistorySnapshotUndoRedo(benchmark::State& state) {
    EditHistory history(ProfileKind::Daily);
    const QStringList column(Describe(ProfileKind::Daily).rows, u"1"_s);
    for (auto _ : state) {
        history.PushSnapshot(column);
        benchmark::DoNotOptimize(history.UndoSnapshot(column));
        benchmark::DoNotOptimize(history.RedoSnapshot());
    }
}

void Sizes(benchmark::internal::Benchmark* one) {
    one->RangeMultiplier(10)->Range(kMinPoints, kMaxPoints)->Unit(benchmark::kMillisecond);
}

void PasteSizes(benchmark::internal::Benchmark* one) {
    one->RangeMultiplier(10)->Range(kMinPoints, kMaxPoints)->Arg(2 * kMaxPoints / 10);
    one->Unit(benchmark::kMillisecond)->Complexity(benchmark::oNLogN);
}

// Fitted to one order, not to the best fitting one: a misfit shows as a large RMS.
void LinearSizes(benchmark::internal::Benchmark* one) {
    Sizes(one);
    one->Complexity(benchmark::oN);
}

BENCHMARK(SplitLines)->Apply(LinearSizes);
BENCHMARK(ReadBytes)->Apply(LinearSizes);
BENCHMARK(ReadFile)->Apply(LinearSizes);
BENCHMARK(WriteBytesAndSync)->Apply(LinearSizes)->UseRealTime();
BENCHMARK(WriteFile)->Apply(LinearSizes)->UseRealTime();
BENCHMARK(FillSession)->Apply(LinearSizes);
BENCHMARK(EnterValue)
    ->RangeMultiplier(10)
    ->Range(kMinPoints, kMaxPoints)
    ->Complexity(benchmark::o1);
BENCHMARK(EnterTimeOfMovedRow)->Apply(LinearSizes);
BENCHMARK(UndoAndRedoMove)->Apply(LinearSizes);
BENCHMARK(InsertAndRemovePoint)->Apply(LinearSizes);
BENCHMARK(RemoveEverySecondRow)
    ->RangeMultiplier(10)
    ->Range(kMinPoints, kMaxPoints / 10)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);
BENCHMARK_CAPTURE(AllAtOnce, Multiply, Multiply)->Apply(LinearSizes);
BENCHMARK_CAPTURE(AllAtOnce, FillAndReturn, FillAndReturn)->Apply(LinearSizes);
BENCHMARK_CAPTURE(AllAtOnce, Series, Replace)->Apply(LinearSizes);
BENCHMARK_CAPTURE(Paste, Values, ProfileTable::kValueColumn, PasteOrder::Rising)->Apply(PasteSizes);
BENCHMARK_CAPTURE(Paste, TimesRising, ProfileTable::kLabelColumn, PasteOrder::Rising)
    ->Apply(PasteSizes);
BENCHMARK_CAPTURE(Paste, TimesFalling, ProfileTable::kLabelColumn, PasteOrder::Falling)
    ->Apply(PasteSizes);
BENCHMARK_CAPTURE(Paste, TimesShuffled, ProfileTable::kLabelColumn, PasteOrder::Shuffled)
    ->Apply(PasteSizes);
BENCHMARK(InsertPastedPoints)->Apply(PasteSizes);
BENCHMARK(ImportPoints)->Apply(LinearSizes);
BENCHMARK_CAPTURE(Rebalance, Annual, ProfileKind::Annual);
BENCHMARK_CAPTURE(Rebalance, Daily, ProfileKind::Daily);
BENCHMARK(HistoryStepUndoRedo);
BENCHMARK(HistorySnapshotUndoRedo);

}  // namespace

// Reading a file writes its trace to standard output, which goes nowhere here; the report goes to
// standard error.
int main(int argc, char* argv[]) {
    const QCoreApplication app(argc, argv);
    if (std::freopen(qPrintable(QProcess::nullDevice()), "w", stdout) == nullptr)
        return 1;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    const std::unique_ptr<benchmark::BenchmarkReporter> reporter(
        benchmark::CreateDefaultDisplayReporter());
    reporter->SetOutputStream(&std::cerr);
    return benchmark::RunSpecifiedBenchmarks(reporter.get()) > 0 ? 0 : 1;
}
