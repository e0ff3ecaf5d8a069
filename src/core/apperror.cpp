#include "apperror.h"

namespace pg {

AppError::AppError(qint32 number, QString description, QString source, std::source_location where)
    : m_number(number)
    , m_description(std::move(description))
    , m_source(std::move(source))
    , m_line(int(where.line()))
    , m_what(QStringLiteral("Error %1 %2").arg(number).arg(m_description).toUtf8())
{
}

} // namespace pg
