// How fast the events reply is decoded, beside what its bytes cost at the least: a bare simdjson
// parse of the same bytes, and beside QJsonDocument.
//
// The bare parse is parser.parse(body): the copy that gives the body its padding and the DOM, with
// a parser that is made for each reply, as decodeEvents does, and with one that is kept (which
// saves it touching fresh memory). Runs alternate, so that a busy machine slows all alike; shown
// are medians.

#include "Clocks.h"
#include "EventsReply.h"
#include "model/DecodeEvents.h"

#include <QJsonDocument>

#include <simdjson.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

namespace {

// Of this thread's processor time, in milliseconds.
double millisecondsOf(const std::function<void()> &work)
{
    const auto start = Clocks::ofThread();
    work();
    return Clocks::ofThread() - start;
}

double median(std::vector<double> runs)
{
    std::ranges::nth_element(runs, runs.begin() + static_cast<std::ptrdiff_t>(runs.size() / 2));
    return runs[runs.size() / 2];
}

void insist(bool isRight)
{
    if (!isRight)
        std::abort();
}

void measure(int rows, int runs)
{
    const QByteArray body = eventsReply(rows);
    const auto *const bytes = body.constData();
    const auto size = static_cast<size_t>(body.size());
    simdjson::dom::parser kept;
    std::vector<double> decode;
    std::vector<double> fresh;
    std::vector<double> bare;
    std::vector<double> qt;
    for (int run = 0; run < runs; ++run) {
        decode.push_back(millisecondsOf([&] {
            const auto decoded = decodeEvents(body);
            insist(std::get<QList<Event>>(decoded).size() == rows);
        }));
        fresh.push_back(millisecondsOf([&] {
            simdjson::dom::parser parser;
            insist(!parser.parse(bytes, size).error());
        }));
        bare.push_back(millisecondsOf([&] { insist(!kept.parse(bytes, size).error()); }));
        if (run % 4 == 0)
            qt.push_back(millisecondsOf([&] { insist(QJsonDocument::fromJson(body).isArray()); }));
    }
    const auto speed = [&](const std::vector<double> &times) {
        return double(size) / 1e3 / median(times);
    };
    std::printf("| %d | %.2f | %.0f | %.0f | %.0f | %.0f | %.2f | %.2f | %.2f |\n", rows,
                double(size) / 1e6, speed(decode), speed(fresh), speed(bare), speed(qt),
                median(decode) / median(fresh), median(decode) / median(bare), median(decode));
    std::fflush(stdout);
}

} // namespace

int main()
{
    std::printf(
        "| rows | MB | decodeEvents MB/s | bare, fresh parser MB/s | bare, kept parser MB/s "
        "| QJsonDocument MB/s | times bare, fresh | times bare, kept | decodeEvents ms |\n"
        "|---|---|---|---|---|---|---|---|---|\n");
    measure(1'000, 401);
    measure(10'000, 101);
    measure(100'000, 21);
    return 0;
}
