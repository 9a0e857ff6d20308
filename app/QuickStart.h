#pragma once

#include <thread>

/// Lets the heap grow in few large steps. Pages that are never used cost nothing.
void GrowHeapInLargeSteps();

/// Reads the system's font configuration, a good part of the work of a start, while its owner does
/// something else. That changes nothing but the time: whoever needs fonts before it has ended reads
/// them too. It does nothing where it has no other processor.
class FontReading {
public:
    FontReading();
    ~FontReading() { Wait(); }
    FontReading(const FontReading&) = delete;
    FontReading& operator=(const FontReading&) = delete;

    /// Until it has ended.
    void Wait();

private:
    std::thread::native_handle_type m_thread = {};
    bool m_runs = false;
};
