// How fast the events reply is decoded, beside what its bytes cost at the least: a bare simdjson
// parse of the same bytes, and beside QJsonDocument.
//
// The bare parse is parser.parse(body): the copy that gives the body its padding and the DOM, with
// a parser that is made for each reply, as decodeEvents does, and with one that is kept (which
// saves it touching fresh memory). Runs alternate, so that a busy machine slows all alike; shown
// are medians.

#include "model/DecodeEvents.h"

#include <QJsonDocument>

#include <simdjson.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <vector>

namespace {

// Rows as the service writes them: six-digit fractions, ids and users as UUIDs, French texts.
QByteArray reply(int rows)
{
    static const std::array titles{
        "Atelier création",  "Marché de Noël",   "Concert à l'église",    "Repas des aînés",
        "Sortie découverte", "Réunion publique", "Fête de la Saint-Jean", "Vide-grenier"};
    static const std::array places{"Salle Vaudrelle", "Place de l'Église", "Foyer rural",
                                   "Bibliothèque", "Stade municipal"};
    static const std::array hosts{"Association Culturelle", "Comité des fêtes",
                                  "Mairie de Morvelle", "Club de marche"};
    static const std::array tags{R"(["Atelier","Jeune public"])",
                                 R"(["Repas"])",
                                 "[]",
                                 "null",
                                 R"(["Sport","Nature"])",
                                 R"(["Fête","Musique","Jeune public"])"};
    QByteArray body = "[";
    for (int i = 0; i < rows; ++i) {
        const auto pick = [i](const auto &list, int step) {
            return list[static_cast<size_t>(i * step) % list.size()];
        };
        char row[1'024];
        const int size = std::snprintf(
            row, sizeof(row),
            R"(%s{"id":"%08x-4a1b-4c2d-8e3f-%012x","titre":"%s","description":"Séance %d, pour les enfants de %d à 11 ans. )"
            R"(Inscription auprès de l'association, places limitées.\nApporter son goûter.","tags":%s,)"
            R"("lieu":"%s","link":%s,"organise_par":"%s","status":"published",)"
            R"("contact_email":"contact%d@exemple.fr","user_id":"7d0c1f7e-9b1a-4f5e-8a44-%012x",)"
            R"("ts":"2026-%02d-%02dT09:%02d:33.%06d+00:00","date_texte":"2026-%02d-%02d",)"
            R"("heure_texte":"%02d:30","starts_at":"2026-%02d-%02dT%02d:30:00+00:00"})",
            i > 0 ? "," : "", static_cast<unsigned>(i) * 2'654'435'761U, static_cast<unsigned>(i),
            pick(titles, 5), i, i % 9, pick(tags, 1), pick(places, 3),
            i % 3 == 0 ? "null" : R"("https://www.exemple.fr/agenda")", pick(hosts, 7), i % 40,
            static_cast<unsigned>(i % 25), i % 12 + 1, i % 28 + 1, i % 60, i % 1'000'000,
            i % 12 + 1, i % 28 + 1, i % 14 + 8, i % 12 + 1, i % 28 + 1, i % 14 + 6);
        body.append(row, size);
    }
    return body + "]";
}

// Of this thread's processor time.
double now()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

double secondsOf(const std::function<void()> &work)
{
    const auto start = now();
    work();
    return now() - start;
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
    const QByteArray body = reply(rows);
    const auto *const bytes = body.constData();
    const auto size = static_cast<size_t>(body.size());
    simdjson::dom::parser kept;
    std::vector<double> decode;
    std::vector<double> fresh;
    std::vector<double> bare;
    std::vector<double> qt;
    for (int run = 0; run < runs; ++run) {
        decode.push_back(secondsOf([&] {
            const auto decoded = decodeEvents(body);
            insist(std::get<QList<Event>>(decoded).size() == rows);
        }));
        fresh.push_back(secondsOf([&] {
            simdjson::dom::parser parser;
            insist(!parser.parse(bytes, size).error());
        }));
        bare.push_back(secondsOf([&] { insist(!kept.parse(bytes, size).error()); }));
        if (run % 4 == 0)
            qt.push_back(secondsOf([&] { insist(QJsonDocument::fromJson(body).isArray()); }));
    }
    const auto speed = [&](const std::vector<double> &times) {
        return double(size) / 1e6 / median(times);
    };
    std::printf("| %d | %.2f | %.0f | %.0f | %.0f | %.0f | %.2f | %.2f | %.2f |\n", rows,
                double(size) / 1e6, speed(decode), speed(fresh), speed(bare), speed(qt),
                median(decode) / median(fresh), median(decode) / median(bare),
                median(decode) * 1e3);
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
