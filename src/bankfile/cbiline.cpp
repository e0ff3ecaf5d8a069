#include "cbiline.h"

#include "core/apperror.h"
#include "core/cp1252.h"

#include <QString>

#include <algorithm>
#include <charconv>
#include <cstring>

namespace pg::bankfile {

namespace {

bool isControl(char c)
{
    const auto b = static_cast<unsigned char>(c);
    return b < 0x20 || b == 0x7F;
}

} // namespace

CbiLine::CbiLine(QLatin1StringView type)
{
    m_bytes.append(' ');
    m_bytes.append(type.data(), type.size());
}

// The bytes made size long, the new ones filled.
void CbiLine::grow(qsizetype size, char fill)
{
    const qsizetype old = m_bytes.size();
    m_bytes.resize(size);
    std::memset(m_bytes.data() + old, fill, size_t(size - old));
}

qsizetype CbiLine::appendPlain(QStringView text)
{
    const qsizetype start = m_bytes.size();
    m_bytes.resize(start + text.size());
    char *out = m_bytes.data() + start;
    const qsizetype used = cp1252::encodeInto(text, out);
    std::replace_if(out, out + used, isControl, ' ');
    m_bytes.resize(start + used);
    return start;
}

// The bytes from start without the blanks at their two ends.
void CbiLine::trimFrom(qsizetype start)
{
    char *data = m_bytes.data();
    qsizetype begin = start;
    qsizetype end = m_bytes.size();
    while (begin < end && data[begin] == ' ')
        ++begin;
    while (end > begin && data[end - 1] == ' ')
        --end;
    std::memmove(data + start, data + begin, size_t(end - begin));
    m_bytes.resize(start + (end - begin));
}

// The bytes from start cut to n or blank-filled to n.
void CbiLine::alignLeft(qsizetype start, int n)
{
    if (m_bytes.size() - start > n)
        m_bytes.resize(start + n);
    else
        grow(start + n, ' ');
}

// The bytes from start as their last n, or with fill in front up to n.
void CbiLine::alignRight(qsizetype start, int n, char fill)
{
    const qsizetype size = m_bytes.size() - start;
    if (size >= n) {
        char *data = m_bytes.data();
        std::memmove(data + start, data + start + (size - n), size_t(n));
        m_bytes.resize(start + n);
        return;
    }
    m_bytes.resize(start + n);
    char *data = m_bytes.data();
    std::memmove(data + start + (n - size), data + start, size_t(size));
    std::memset(data + start, fill, size_t(n - size));
}

CbiLine &CbiLine::alpha(QStringView text, int n)
{
    const qsizetype start = appendPlain(text);
    trimFrom(start);
    alignLeft(start, n);
    return *this;
}

CbiLine &CbiLine::numeric(QStringView text, int n)
{
    const qsizetype start = appendPlain(text);
    trimFrom(start);
    alignRight(start, n, '0');
    return *this;
}

CbiLine &CbiLine::number(qint64 value, int n)
{
    char digits[24];
    const auto [end, ec] = std::to_chars(digits, digits + sizeof digits, value);
    const qsizetype start = m_bytes.size();
    m_bytes.append(digits, end - digits);
    alignRight(start, n, '0');
    return *this;
}

CbiLine &CbiLine::fixed(QStringView text, int n)
{
    alignLeft(appendPlain(text), n);
    return *this;
}

CbiLine &CbiLine::copied(QByteArrayView bytes, int n)
{
    const qsizetype start = m_bytes.size();
    m_bytes.append(bytes.data(), bytes.size());
    alignLeft(start, n);
    return *this;
}

CbiLine &CbiLine::support(QByteArrayView header)
{
    return copied(header.sliced(3, 5), 5)
        .copied(header.sliced(8, 5), 5)
        .copied(header.sliced(13, 6), 6)
        .copied(header.sliced(19, 20), 20);
}

CbiLine &CbiLine::blanks(int n)
{
    grow(m_bytes.size() + n, ' ');
    return *this;
}

CbiLine &CbiLine::literal(QLatin1StringView text)
{
    m_bytes.append(text.data(), text.size());
    return *this;
}

QByteArray CbiLine::finish(int width)
{
    if (m_bytes.size() != width)
        throw AppError(
            AppError::Overflow,
            QStringLiteral("Record CBI di %1 byte invece di %2").arg(m_bytes.size()).arg(width));
    QByteArray line(m_bytes.constData(), m_bytes.size());
    m_bytes.clear();
    return line;
}

} // namespace pg::bankfile
