#include "cp1252.h"

#include <QList>
#include <QStringView>

namespace pg::cp1252 {

namespace {

// Bytes 0x80 to 0x9F; 0 marks the five the code page leaves undefined.
constexpr char16_t High[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
    0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,
};

int byteOf(char32_t ucs)
{
    if (ucs < 0x80 || (ucs >= 0xA0 && ucs <= 0xFF))
        return int(ucs);
    for (int i = 0; i < 32; ++i)
        if (High[i] != 0 && High[i] == ucs)
            return 0x80 + i;
    return -1;
}

// Letters without a decomposition that still have an obvious plain form.
char32_t plainForm(char32_t ucs)
{
    switch (ucs) {
    case 0x0141: return u'L'; // Ł
    case 0x0142: return u'l';
    case 0x0110: return u'D'; // Đ
    case 0x0111: return u'd';
    case 0x0131: return u'i'; // dotless i
    case 0x0126: return u'H';
    case 0x0127: return u'h';
    case 0x2010: case 0x2011: case 0x2012: case 0x2212: return u'-';
    case 0x00A0: return u' ';
    case 0x2007: case 0x2008: case 0x2009: case 0x200A: case 0x202F: return u' ';
    default: break;
    }
    return 0;
}

char32_t substitute(char32_t ucs)
{
    if (byteOf(ucs) >= 0)
        return ucs;
    if (const char32_t plain = plainForm(ucs))
        return plain;
    const QString decomposed = QChar::decomposition(ucs);
    if (!decomposed.isEmpty()) {
        const char32_t base = decomposed.at(0).unicode();
        if (byteOf(base) >= 0 && base != u' ')
            return base;
    }
    return u'?';
}

} // namespace

bool isRepresentable(char32_t ucs)
{
    return byteOf(ucs) >= 0;
}

QString toCodePage(QStringView text)
{
    QString out;
    out.reserve(text.size());
    for (char32_t ucs : text.toUcs4())
        out += QChar(char16_t(substitute(ucs)));
    return out;
}

QByteArray encode(QStringView text)
{
    QByteArray out;
    out.reserve(text.size());
    for (char32_t ucs : text.toUcs4())
        out += char(byteOf(substitute(ucs)));
    return out;
}

QString decode(QByteArrayView bytes)
{
    QString out;
    out.reserve(bytes.size());
    for (char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        if (b >= 0x80 && b <= 0x9F && High[b - 0x80] != 0)
            out += QChar(High[b - 0x80]);
        else
            out += QChar(char16_t(b));
    }
    return out;
}

} // namespace pg::cp1252
