// Started by bench_start: the plainest program that shows the events, of what the toolkit has.

#include <QApplication>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

void show(QListWidget &list, const QByteArray &reply)
{
    const QLocale locale;
    const QJsonArray events = QJsonDocument::fromJson(reply).array();
    for (const QJsonValue &event : events) {
        const auto start =
            QDateTime::fromString(event["starts_at"_L1].toString(), Qt::ISODateWithMs)
                .toLocalTime();
        list.addItem(event["titre"_L1].toString() + u'\n'
                     + locale.toString(start, QLocale::ShortFormat) + u", "_s
                     + event["lieu"_L1].toString());
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QNetworkAccessManager manager;
    QWidget window;
    QListWidget list;
    auto *column = new QVBoxLayout(&window);
    column->addWidget(new QLabel(u"amorvelle.fr"_s));
    column->addWidget(new QPushButton(u"Ajouter un compte"_s));
    column->addWidget(&list);
    window.resize(760, 620);
    window.show();

    QNetworkRequest request(QUrl(qEnvironmentVariable("SUPABASE_URL")
                                 + u"/rest/v1/events?select=*&order=starts_at.asc"_s));
    request.setRawHeader("apikey", qgetenv("SUPABASE_KEY"));
    QNetworkReply *const reply = manager.get(request);
    QObject::connect(reply, &QNetworkReply::finished, &list,
                     [&list, reply] { show(list, reply->readAll()); });
    return QApplication::exec();
}
