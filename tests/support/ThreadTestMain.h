#pragma once

#include <QCoreApplication>
#include <QTest>

// THREAD_TEST_MAIN(Class) stands in place of QTEST_GUILESS_MAIN in the tests that also run under
// ThreadSanitizer. Qt Test's runner watches over each test from a thread of its own and meets it in
// the distribution's Qt, where the sanitizer cannot see the two agree, and reports them. Under the
// sanitizer the tests are therefore called without that runner: plain slots, in their order.

#ifdef __SANITIZE_THREAD__

inline int runWithoutWatchdog(QObject &tests)
{
    const QMetaObject *meta = tests.metaObject();
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        if (method.methodType() != QMetaMethod::Slot)
            continue;
        Q_ASSERT(!method.name().endsWith("_data") && method.name() != "init");
        if (!method.invoke(&tests, Qt::DirectConnection) || QTest::currentTestFailed()) {
            qCritical("FAIL: %s (another build tells where)", method.name().constData());
            return 1;
        }
        qInfo("PASS: %s", method.name().constData());
    }
    return 0;
}

#define THREAD_TEST_MAIN(Class)                                                                    \
    int main(int argc, char *argv[])                                                               \
    {                                                                                              \
        const QCoreApplication application(argc, argv);                                            \
        Class tests;                                                                               \
        return runWithoutWatchdog(tests);                                                          \
    }

#else

#define THREAD_TEST_MAIN(Class) QTEST_GUILESS_MAIN(Class)

#endif
