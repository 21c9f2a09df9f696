#pragma once

#include <QByteArray>

/// What a long reply costs before it is decoded, beside what its bytes cost at the least: taking it
/// from the service, beside a socket that is read into one buffer; and inflating it, beside the
/// library's own inflate of the whole. Prints a table. For the thread of the application.
void measureReceiving(const QByteArray &body);
