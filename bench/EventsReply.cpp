#include "EventsReply.h"

#include <array>
#include <cstdio>

QByteArray eventsReply(int rows, int year)
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
            R"("ts":"%04d-%02d-%02dT09:%02d:33.%06d+00:00","date_texte":"%04d-%02d-%02d",)"
            R"("heure_texte":"%02d:30","starts_at":"%04d-%02d-%02dT%02d:30:00+00:00"})",
            i > 0 ? "," : "", static_cast<unsigned>(i) * 2'654'435'761U, static_cast<unsigned>(i),
            pick(titles, 5), i, i % 9, pick(tags, 1), pick(places, 3),
            i % 3 == 0 ? "null" : R"("https://www.exemple.fr/agenda")", pick(hosts, 7), i % 40,
            static_cast<unsigned>(i % 25), year, i % 12 + 1, i % 28 + 1, i % 60, i % 1'000'000,
            year, i % 12 + 1, i % 28 + 1, i % 14 + 8, year, i % 12 + 1, i % 28 + 1, i % 14 + 6);
        body.append(row, size);
    }
    return body + "]";
}
