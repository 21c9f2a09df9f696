#include "check/ProjectCheck.h"

#include "backend/EventRequests.h"
#include "backend/RequestParts.h"
#include "backend/SupabaseError.h"
#include "check/PublicKey.h"
#include "model/DecodeEvents.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>

#include <cstdlib>
#include <utility>
#include <variant>

using namespace Qt::StringLiterals;

namespace {

/// From here on a sign-in's token may seem to be of the future, or over.
constexpr qint64 mostSecondsApart = 120;

/// What PostgreSQL says where a role lacks the right (its SQLSTATE).
constexpr QStringView insufficientPrivilege = u"42501";

QString inWords(qint64 seconds)
{
    return seconds < 7200 ? u"%1 min"_s.arg(seconds / 60) : u"%1 h"_s.arg(seconds / 3600);
}

} // namespace

ProjectCheck::ProjectCheck(Configuration configuration, std::function<void(const Finding &)> tell)
    : m_configuration(std::move(configuration))
    , m_tell(std::move(tell))
{
}

void ProjectCheck::tell(Finding::Weight weight, const QString &text)
{
    if (weight == Finding::Weight::Fault)
        ++m_faults;
    m_tell({weight, text});
}

Request ProjectCheck::request(const QByteArray &verb, const QString &path,
                              const QByteArray &body) const
{
    Request request{verb,
                    addressOf(m_configuration, path),
                    {apiKey(m_configuration), bearer(m_configuration.supabaseKey), acceptJson()},
                    body};
    if (!body.isEmpty())
        request.headers.append(jsonContent());
    return request;
}

QCoro::Task<void> ProjectCheck::run()
{
    if (isSecretKey(m_configuration.supabaseKey)) {
        // Not even sent: the answers would say nothing about what members meet.
        fault(u"La clé est la clé secrète du projet : elle passe outre à toutes les règles. Ne la "
              "mettez dans aucun paquet ; si elle y a été, remplacez-la dans le projet."_s);
        co_return;
    }
    try {
        Request first = fetchEventsRequest(m_configuration, {});
        const QCoro::Task<Answer> asking = m_probe.ask(std::move(first));
        const Answer answer = co_await asking;
        judgeConnection(answer);
        if (m_isOutOfReach)
            co_return;
        judgeClock(answer);
        if (!judgeKey(answer))
            co_return;
        if (judgeTable(answer)) {
            const QCoro::Task<void> rows = checkRows();
            co_await rows;
            const QCoro::Task<void> writes = checkWrites();
            co_await writes;
        }
        const QCoro::Task<void> accounts = checkAccounts();
        co_await accounts;
    } catch (const SupabaseError &) {
        fault(u"L'adresse « %1 » ne peut pas être celle d'un projet."_s.arg(
            m_configuration.supabaseURL));
    }
}

void ProjectCheck::judgeConnection(const Answer &answer)
{
    const QString base = m_configuration.supabaseURL;
    m_isOutOfReach = answer.status == 0 || answer.isRefusedCertificate;
    if (answer.isRefusedCertificate) {
        fault(u"Le certificat de %1 est refusé : %2."_s.arg(base, answer.failure));
        return;
    }
    if (answer.status == 0) {
        fault(u"%1 est hors d'atteinte : %2."_s.arg(base, answer.failure));
        return;
    }
    good(u"L'adresse répond : %1"_s.arg(base));
    if (base.startsWith(u"https://"))
        good(u"Le certificat est valable."_s);
    else
        notice(u"La connexion n'est pas chiffrée : chacun peut lire en chemin les mots de passe. "
               "Seul un essai sur cet ordinateur peut s'en passer."_s);
}

void ProjectCheck::judgeClock(const Answer &answer)
{
    if (!answer.date.isValid()) {
        notice(u"Le serveur ne dit pas l'heure : l'horloge n'a pas été comparée."_s);
        return;
    }
    const qint64 apart = std::abs(answer.date.secsTo(QDateTime::currentDateTimeUtc()));
    if (apart <= mostSecondsApart)
        good(u"L'horloge de cet ordinateur s'accorde avec celle du serveur."_s);
    else
        fault(u"L'horloge de cet ordinateur et celle du serveur diffèrent de %1."_s.arg(
            inWords(apart)));
}

bool ProjectCheck::judgeKey(const Answer &answer)
{
    // A table that the key may not read is refused by the same status.
    const bool isRefused = answer.status == 401 || answer.status == 403;
    if (isRefused && answer.code() != insufficientPrivilege) {
        fault(u"La clé est refusée (HTTP %1) : elle a été changée dans le projet, ou c'est celle "
              "d'un autre."_s.arg(answer.status));
        return false;
    }
    good(u"La clé est acceptée, et ce n'est pas la clé secrète."_s);
    return true;
}

bool ProjectCheck::judgeTable(const Answer &answer)
{
    if (answer.isSuccess())
        return true;
    const QString code = answer.code();
    if (code == insufficientPrivilege)
        fault(u"La table « events » ne peut pas être lue avec la clé publique : les droits des "
              "migrations manquent."_s);
    else if (code == u"PGRST205" || code == u"42P01")
        fault(u"La table « events » n'existe pas : les migrations n'ont pas été appliquées."_s);
    else if (code == u"42703" || code == u"PGRST204")
        fault(u"Une colonne manque à la table « events » : %1"_s.arg(
            QJsonDocument::fromJson(answer.body).object().value(u"message"_s).toString()));
    else
        fault(u"La lecture des événements a échoué (HTTP %1) : %2"_s.arg(answer.status)
                  .arg(QString::fromUtf8(answer.body.left(200))));
    return false;
}

QCoro::Task<void> ProjectCheck::checkRows()
{
    Request whole = fetchEventsRequest(m_configuration, {});
    const QCoro::Task<Answer> asking = m_probe.ask(whole);
    const Answer answer = co_await asking;
    const auto decoded = decodeEvents(answer.body);
    if (const auto *const error = std::get_if<DecodingError>(&decoded)) {
        fault(u"L'application ne peut pas lire les événements : %1"_s.arg(error->description));
        co_return;
    }
    good(u"La table « events » a toutes ses colonnes, et chaque ligne se lit."_s);

    const qsizetype rows = std::get<QList<Event>>(decoded).size();
    whole.address.setQuery(whole.address.query(QUrl::FullyEncoded)
                           + u"&offset=%1&limit=1"_s.arg(rows));
    const QCoro::Task<Answer> askingOn = m_probe.ask(std::move(whole));
    const Answer next = co_await askingOn;
    if (!QJsonDocument::fromJson(next.body).array().isEmpty())
        fault(u"Le projet ne rend que %1 lignes et en a davantage : les événements à venir sont "
              "cachés. Élevez « Max rows », ou supprimez d'anciens événements."_s.arg(rows));
    else
        good(u"Toutes les lignes arrivent : %1. (Un projet neuf n'en rend que 1000.)"_s.arg(rows));
}

QCoro::Task<void> ProjectCheck::checkWrites()
{
    // A title is required: where anybody may write, this row fails all the same, but later, and by
    // another code than where nobody may.
    const QString id = QUuid::createUuid().toString(QUuid::WithoutBraces);
    const QByteArray row = R"({"id":")" + id.toLatin1() + R"(","titre":null})";
    const QString place = u"/rest/v1/events?id=eq."_s + id;
    struct Attempt {
        QByteArray verb;
        QString path;
        QByteArray body;
        QString what;
    };
    const QList<Attempt> attempts{
        {"POST", u"/rest/v1/events"_s, row, u"publier"_s},
        {"PATCH", place, R"({"lieu":"-"})", u"modifier"_s},
        {"DELETE", place, {}, u"supprimer"_s},
    };
    QStringList open;
    for (const Attempt &attempt : attempts) {
        const QCoro::Task<Answer> asking =
            m_probe.ask(request(attempt.verb, attempt.path, attempt.body));
        const Answer answer = co_await asking;
        // The deletion that comes last takes back what a table without that rule has stored.
        if (answer.status != 401 && answer.status != 403)
            open.append(attempt.what);
    }
    if (open.isEmpty())
        good(u"Qui n'est pas connecté ne peut rien publier, modifier ni supprimer."_s);
    else
        fault(u"Qui n'est pas connecté peut %1 des événements : les droits de la table ne sont pas "
              "ceux des migrations."_s.arg(open.join(u" et "_s)));
}

QCoro::Task<void> ProjectCheck::checkAccounts()
{
    const QCoro::Task<Answer> asking = m_probe.ask(request("GET", u"/auth/v1/settings"_s));
    const Answer answer = co_await asking;
    const QJsonObject settings = QJsonDocument::fromJson(answer.body).object();
    if (!answer.isSuccess() || settings.isEmpty()) {
        fault(u"Le service des comptes ne répond pas (HTTP %1) : personne ne peut se connecter."_s
                  .arg(answer.status));
        co_return;
    }
    if (!settings.value(u"external"_s).toObject().value(u"email"_s).toBool(true))
        fault(u"La connexion par e-mail est fermée : personne ne peut se connecter."_s);
    if (settings.value(u"disable_signup"_s).toBool())
        notice(u"L'inscription est fermée : « Créer un compte » est refusé à tous."_s);
    else
        good(u"L'inscription est ouverte."_s);
    if (settings.value(u"mailer_autoconfirm"_s).toBool())
        notice(u"Les adresses ne sont pas confirmées : chacun peut en donner une qui n'est pas la "
               "sienne."_s);
    else
        notice(u"Les adresses sont confirmées par courrier : sans serveur SMTP à vous, seuls les "
               "membres de l'équipe du projet le reçoivent."_s);
}
