#include "backend/OneShotBody.h"

#include <algorithm>
#include <cstring>

OneShotBody::OneShotBody(const QByteArray &bytes, QObject *parent)
    : QIODevice(parent)
    , m_bytes(bytes)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 OneShotBody::bytesAvailable() const
{
    return m_bytes.size() - m_position + QIODevice::bytesAvailable();
}

qint64 OneShotBody::readData(char *data, qint64 size)
{
    const qsizetype count = std::min<qint64>(size, m_bytes.size() - m_position);
    if (count == 0)
        return -1;
    std::memcpy(data, m_bytes.constData() + m_position, static_cast<size_t>(count));
    m_position += count;
    return count;
}

qint64 OneShotBody::writeData(const char *, qint64)
{
    return -1;
}
