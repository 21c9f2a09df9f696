#pragma once

#include <QIODevice>

/// A request's body that can be read once.
///
/// The network manager silently sends a request again when a connection drops before the reply
/// came, also a write, which then happens twice. It has to rewind the body for that, be it empty:
/// this one cannot be rewound.
class OneShotBody : public QIODevice {
    Q_OBJECT

public:
    explicit OneShotBody(const QByteArray &bytes, QObject *parent = nullptr);

    bool isSequential() const override { return true; }
    bool reset() override { return false; }
    bool atEnd() const override { return m_position == m_bytes.size(); }
    qint64 bytesAvailable() const override;

protected:
    qint64 readData(char *data, qint64 size) override;
    qint64 writeData(const char *data, qint64 size) override;

private:
    QByteArray m_bytes;
    qsizetype m_position = 0;
};
