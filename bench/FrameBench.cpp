// SPDX-License-Identifier: GPL-3.0-or-later
// Time of one change in the real dialog on the offscreen platform, up to the painted window. The
// arguments of a benchmark are the number of points and whether their times stand in order.

#include "BenchPoints.h"
#include "RunDialog.h"
#include "chart/CGraphControl.h"
#include "chart/CGraphView.h"
#include "chart/ChartExport.h"
#include "chart/ChartPicture.h"

#include <benchmark/benchmark.h>

#include <QAction>
#include <QApplication>
#include <QMouseEvent>
#include <QTableView>
#include <QTest>
#include <QWheelEvent>

#include <array>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaxRounds = 20;

// The dialog of a function, shown and painted, and the user before it.
class Window : public QObject {
public:
    Window(int count, bool ordered) : m_points(count) {
        if (!ordered)
            m_points.times = Shuffled(m_points.times);
        SessionSetup setup;
        setup.name = m_name;
        setup.times = m_points.times;
        setup.values = m_points.values;
        m_dialog = std::make_unique<CDlgGridChart>(std::move(setup));
        // The modal run sets the dialog up and ends at once; shown again it leaves the control
        // here.
        RunDialog(*m_dialog, [] {});
        m_dialog->show();
        m_view = m_dialog->findChild<CGraphView*>();
        m_grid = m_dialog->findChild<QTableView*>();
        m_view->installEventFilter(this);
        // What lies over the chart is painted without what is below.
        for (QWidget* const part : m_view->findChildren<QWidget*>())
            part->installEventFilter(this);
        Settle();
    }

    bool eventFilter(QObject*, QEvent* event) override {
        m_painted = m_painted || event->type() == QEvent::Paint;
        return false;
    }

    // Lets everything happen that is due, as the event loop would; true when the chart was painted.
    bool Frame() {
        m_painted = false;
        // One round more: the plot asks for another painting, of what it has drawn already.
        for (int round = 0; round < kMaxRounds && !m_painted; ++round)
            QApplication::processEvents();
        QApplication::processEvents();
        return m_painted;
    }

    // As an entry that was typed into the value of a row (from 0), another one each time.
    void EnterValue(int row = 1) {
        const QString text = m_entries++ % 2 == 0 ? u"510.25"_s : u"497.75"_s;
        m_grid->model()->setData(m_grid->model()->index(row, 1), text, Qt::EditRole);
    }

    void SelectAll() { m_grid->selectAll(); }

    // As by its key, which only an active window takes.
    void FillSelection() {
        for (QAction* const action : m_dialog->actions()) {
            if (action->shortcut() == QKeySequence(u"Ctrl+D"_s))
                action->trigger();
        }
    }
    void ClearSelection() { m_grid->clearSelection(); }

    // Where a point in the middle of the list stands in the chart.
    QPoint PointPlace() const {
        const qsizetype index = m_points.times.size() / 2;
        return m_view->Scale()
            .ToPixels({m_points.times[index].toDouble(), m_points.values[index].toDouble()})
            .toPoint();
    }

    void Mouse(QEvent::Type type, QPoint at, Qt::MouseButton button, bool down,
               Qt::KeyboardModifiers keys = {}) const {
        QMouseEvent event(type, at, m_view->mapToGlobal(at), button,
                          down ? Qt::LeftButton : Qt::NoButton, keys);
        // The application knows the buttons from events that come from outside.
        QSpontaneKeyEvent::setSpontaneous(&event);
        qApp->notify(m_view, &event);
    }

    QPoint Middle() const { return m_view->rect().center(); }

    void Wheel(QPoint at, int turn, Qt::KeyboardModifiers keys) const {
        QWheelEvent event(at, m_view->mapToGlobal(at), {}, {0, turn}, {}, keys, Qt::NoScrollPhase,
                          false);
        qApp->notify(m_view, &event);
    }

    ChartPicture Picture() const {
        CGraphControl control;
        control.BuildFunctionChart();
        control.Attach(&m_dialog->session().table(), ProfileKind::Function);
        return {control.document(), m_view->size(), m_view->font()};
    }

    void ShowSteps(bool on) const {
        m_dialog->findChild<CGraphControl*>()->SetLineForm(on ? LineForm::Steps
                                                              : LineForm::Straight);
    }

    void ShowAll() {
        m_view->Zoom().ShowAll();
        Frame();
    }

    bool IsDragging() const { return m_dialog->session().isDragging(); }

private:
    void Settle() {
        for (int round = 0; round < kMaxRounds; ++round)
            QApplication::processEvents();
    }

    QString m_name = u"Function editor"_s;
    BenchPoints m_points;
    std::unique_ptr<CDlgGridChart> m_dialog;
    CGraphView* m_view = nullptr;
    QTableView* m_grid = nullptr;
    int m_entries = 0;
    bool m_painted = false;
};

// The benchmark functions are called several times for one result; a window of a million points is
// not made anew for each. There is one at a time, and none when the application ends.
class WindowStore {
public:
    Window& For(const benchmark::State& state) {
        const std::array wanted = {state.range(0), state.range(1)};
        if (m_shown != wanted) {
            m_window.reset();
            m_shown = wanted;
            m_window = std::make_unique<Window>(static_cast<int>(wanted[0]), wanted[1] != 0);
        }
        return *m_window;
    }

    void Close() { m_window.reset(); }

private:
    std::unique_ptr<Window> m_window;
    std::array<int64_t, 2> m_shown = {-1, -1};
};

WindowStore windows;

// All that an entry does until the window waits for its painting.
void EnterValue(benchmark::State& state) {
    Window& window = windows.For(state);
    for (auto _ : state)
        window.EnterValue();
    window.Frame();
}

void EnterValueFrame(benchmark::State& state) {
    Window& window = windows.For(state);
    for (auto _ : state) {
        window.EnterValue();
        if (!window.Frame())
            state.SkipWithError("nothing was painted");
    }
}

void MeasureDrag(benchmark::State& state, Qt::KeyboardModifiers keys) {
    Window& window = windows.For(state);
    const QPoint from = window.PointPlace();
    window.Mouse(QEvent::MouseButtonPress, from, Qt::LeftButton, true);
    window.Mouse(QEvent::MouseMove, from + QPoint(0, 12), Qt::NoButton, true);
    window.Frame();
    int step = 0;
    for (auto _ : state) {
        ++step;
        window.Mouse(QEvent::MouseMove, from + QPoint(step % 2 == 0 ? 5 : -5, 10 + 2 * (step % 12)),
                     Qt::NoButton, true, keys);
        if (!window.Frame())
            state.SkipWithError("nothing was painted");
    }
    if (!window.IsDragging())
        state.SkipWithError("nothing was dragged");
    window.Mouse(QEvent::MouseMove, from, Qt::NoButton, true);
    window.Mouse(QEvent::MouseButtonRelease, from, Qt::LeftButton, false);
    window.Frame();
}

void DragFrame(benchmark::State& state) {
    MeasureDrag(state, Qt::NoModifier);
}

// In time too: to and fro between the neighbours.
void DragTimeFrame(benchmark::State& state) {
    MeasureDrag(state, Qt::ShiftModifier);
}

// The wheel zooms in by three notches and out again.
void ZoomFrame(benchmark::State& state) {
    Window& window = windows.For(state);
    int step = 0;
    for (auto _ : state) {
        window.Wheel(window.Middle(), step++ % 6 < 3 ? 120 : -120, Qt::NoModifier);
        if (!window.Frame())
            state.SkipWithError("nothing was painted");
    }
    window.ShowAll();
}

// The wheel pans to and fro over half of the points.
void PanFrame(benchmark::State& state) {
    Window& window = windows.For(state);
    for (int i = 0; i < 3; ++i)
        window.Wheel(window.Middle(), 120, Qt::NoModifier);
    window.Frame();
    int step = 0;
    for (auto _ : state) {
        window.Wheel(window.Middle(), ++step % 2 == 0 ? 120 : -120, Qt::ShiftModifier);
        if (!window.Frame())
            state.SkipWithError("nothing was painted");
    }
    window.ShowAll();
}

void SelectAll(benchmark::State& state) {
    Window& window = windows.For(state);
    for (auto _ : state) {
        state.PauseTiming();
        window.ClearSelection();
        window.Frame();
        state.ResumeTiming();
        window.SelectAll();
        window.Frame();
    }
}

// All values get the text of the first one, which is another one each time.
void FillAllFrame(benchmark::State& state) {
    Window& window = windows.For(state);
    for (auto _ : state) {
        state.PauseTiming();
        window.EnterValue(0);
        window.SelectAll();
        window.Frame();
        state.ResumeTiming();
        window.FillSelection();
        if (!window.Frame())
            state.SkipWithError("nothing was painted");
    }
}

// A drawing of the chart for a file, from the points to the bytes.
template <QByteArray (*Content)(const ChartPicture&)>
void SaveChart(benchmark::State& state) {
    const Window& window = windows.For(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(Content(window.Picture()));
}

// The mouse goes over the chart: the item under it is looked for, its tip shown.
void HoverMove(benchmark::State& state) {
    const Window& window = windows.For(state);
    const QPoint at = window.PointPlace();
    int step = 0;
    for (auto _ : state)
        window.Mouse(QEvent::MouseMove, at + QPoint(3 * (++step % 8), 0), Qt::NoButton, false);
}

// The mouse goes over the chart: the hair line and the text that follow it are painted.
void ReadOutFrame(benchmark::State& state) {
    Window& window = windows.For(state);
    window.Mouse(QEvent::MouseMove, window.Middle(), Qt::NoButton, false);
    window.Frame();
    int step = 0;
    for (auto _ : state) {
        window.Mouse(QEvent::MouseMove, window.Middle() + QPoint(3 * (++step % 8), 0), Qt::NoButton,
                     false);
        if (!window.Frame())
            state.SkipWithError("nothing was painted");
    }
}

// After each entry all points are gone through for their ranges and mean.
void StatisticsFrame(benchmark::State& state) {
    Window& window = windows.For(state);
    window.Mouse(QEvent::MouseMove, QPoint(5, 5), Qt::NoButton, false);
    window.Frame();
    for (auto _ : state) {
        window.EnterValue();
        if (!window.Frame())
            state.SkipWithError("nothing was painted");
    }
}

// A zoom of the line in steps.
void StepsZoomFrame(benchmark::State& state) {
    const Window& window = windows.For(state);
    window.ShowSteps(true);
    ZoomFrame(state);
    window.ShowSteps(false);
}

void Sizes(benchmark::internal::Benchmark* one) {
    one->ArgNames({"points", "ordered"})
        ->ArgsProduct({{10, 8'760, 100'000, 525'600, 1'000'000}, {1, 0}})
        ->Unit(benchmark::kMillisecond);
}

BENCHMARK(EnterValue)->Apply(Sizes);
BENCHMARK(EnterValueFrame)->Apply(Sizes);
BENCHMARK(DragFrame)->Apply(Sizes);
BENCHMARK(DragTimeFrame)->Apply(Sizes);
BENCHMARK(ZoomFrame)->Apply(Sizes);
BENCHMARK(PanFrame)->Apply(Sizes);
BENCHMARK(HoverMove)->Apply(Sizes);
BENCHMARK(ReadOutFrame)->Apply(Sizes);
BENCHMARK(StatisticsFrame)->Apply(Sizes);
BENCHMARK(StepsZoomFrame)->Apply(Sizes);
BENCHMARK(SelectAll)->Apply(Sizes);
BENCHMARK(SaveChart<ChartSvg>)->Name("SaveSvg")->Apply(Sizes);
BENCHMARK(SaveChart<ChartPdf>)->Name("SavePdf")->Apply(Sizes);
BENCHMARK(FillAllFrame)->Apply(Sizes);

}  // namespace

int main(int argc, char* argv[]) {
    benchmark::Initialize(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // A painting that is asked for comes at once and not after the platform's 5 ms.
    qputenv("QT_QPA_UPDATE_IDLE_TIME", "0");
    // The platform tells at each tip that it cannot raise windows.
    qputenv("QT_LOGGING_RULES", "default.warning=false");
    const QApplication app(argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    const size_t count = benchmark::RunSpecifiedBenchmarks();
    windows.Close();
    return count > 0 ? 0 : 1;
}
