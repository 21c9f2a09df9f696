// Started by bench_start: what a window of the toolkit costs at the least.

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QWidget window;
    auto *tab = new QLabel(u"Aucun événement à venir."_s);
    auto *tabs = new QTabWidget;
    tabs->addTab(tab, u"À venir"_s);
    auto *column = new QVBoxLayout(&window);
    column->addWidget(new QLabel(u"amorvelle.fr"_s));
    column->addWidget(new QPushButton(u"Ajouter un compte"_s));
    column->addWidget(tabs);
    window.resize(760, 620);
    window.show();
    return QApplication::exec();
}
