#include "platform/LargeBlocks.h"

#include <QTest>
#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#endif

class TestLargeBlocks : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aLongReplyGrowsWithoutBeingCopiedThoughALongerOneWasFreed();
};

#ifdef __GLIBC__
namespace {

size_t mappings()
{
    return mallinfo2().hblks;
}

} // namespace
#endif

void TestLargeBlocks::aLongReplyGrowsWithoutBeingCopiedThoughALongerOneWasFreed()
{
#ifdef __GLIBC__
    keepLargeBlocksApart();
    const size_t before = mappings();
    QByteArray longer(20'000'000, 'a');
    if (mappings() == before)
        QSKIP("This allocator, a sanitizer's say, does not tell its mappings.");
    longer = QByteArray();
    QCOMPARE(mappings(), before);

    QByteArray reply(8'000'000, 'a');
    QCOMPARE(mappings(), before + 1);
    for (qsizetype size = reply.size(); size < 16'000'000; size += 2'000'000)
        reply.resize(size);
    QCOMPARE(mappings(), before + 1);
#else
    QSKIP("Another library's allocator.");
#endif
}

QTEST_APPLESS_MAIN(TestLargeBlocks)

#include "test_large_blocks.moc"
