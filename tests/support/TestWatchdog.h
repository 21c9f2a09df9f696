#pragma once

// To be included by a test that runs under ThreadSanitizer. Qt Test's own watchdog thread ends by
// destroying a QWaitCondition, which the distribution's Qt, built without the sanitizer, seems to
// do while the thread still uses it. No code of ours uses that class.

#ifdef __SANITIZE_THREAD__
extern "C" const char *__tsan_default_suppressions();

extern "C" const char *__tsan_default_suppressions()
{
    return "race:QWaitCondition::~QWaitCondition\nrace:QTest::qRun\n";
}
#endif
