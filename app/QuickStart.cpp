#include "app/QuickStart.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif
#ifdef EDITOR_FONTCONFIG
#include <fontconfig/fontconfig.h>
#include <pthread.h>
#include <sched.h>
#endif

void GrowHeapInLargeSteps() {
#ifdef __GLIBC__
    mallopt(M_TOP_PAD, 4 * 1024 * 1024);
#endif
}

#ifdef EDITOR_FONTCONFIG

namespace {

void* ReadFonts(void*) {
    FcInit();
    return nullptr;
}

}  // namespace

// The thread begins on another processor than this one: a start is over before the system would
// move it there.
FontReading::FontReading() {
    cpu_set_t others;
    const int own = sched_getcpu();
    if (own < 0 || sched_getaffinity(0, sizeof(others), &others) != 0)
        return;
    CPU_CLR(own, &others);
    pthread_attr_t attributes;
    if (CPU_COUNT(&others) == 0 || pthread_attr_init(&attributes) != 0)
        return;
    m_runs = pthread_attr_setaffinity_np(&attributes, sizeof(others), &others) == 0 &&
             pthread_create(&m_thread, &attributes, ReadFonts, nullptr) == 0;
    pthread_attr_destroy(&attributes);
}

void FontReading::Wait() {
    if (m_runs)
        pthread_join(m_thread, nullptr);
    m_runs = false;
}

#else

FontReading::FontReading() = default;

void FontReading::Wait() {
}

#endif
