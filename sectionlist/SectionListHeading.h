#pragma once

#include <QFont>
#include <QWidget>

/// The heading of a section, stuck to the top of the list. The rows below it do not see the mouse.
class SectionListHeading : public QWidget {
    Q_OBJECT

public:
    explicit SectionListHeading(QWidget *parent);

    const QString &title() const { return m_title; }
    void setTitle(const QString &title);

    static QFont font();
    static int height(); ///< of any heading, in pixels
    /// Paints a heading that stands between the rows.
    static void paintTitle(QPainter &painter, const QRect &rect, const QString &title,
                           const QPalette &palette);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_title;
};
