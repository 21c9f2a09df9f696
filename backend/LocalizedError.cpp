#include "backend/LocalizedError.h"

using namespace Qt::StringLiterals;

QString currentFailure()
{
    try {
        throw;
    } catch (const LocalizedError &error) {
        return error.localizedDescription();
    } catch (const std::exception &error) {
        return u"An unexpected error occurred (%1)."_s.arg(QString::fromUtf8(error.what()));
    } catch (...) {
        return u"An unexpected error occurred."_s;
    }
}
