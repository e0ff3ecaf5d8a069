#include "cp1252.h"

#include <QList>
#include <QStringView>

#include <algorithm>

namespace pg::cp1252 {

namespace {

// Bytes 0x80 to 0x9F; 0 marks the five the code page leaves undefined.
// clang-format off
constexpr char16_t High[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
    0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,
};
// clang-format on

// A character the code page holds at its own number.
constexpr bool isOneByte(char16_t c)
{
    return c < 0x80 || (c >= 0xA0 && c <= 0xFF);
}

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
    // clang-format off
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
    // clang-format on
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

// Every character as the code point it stands for: a surrogate pair as one, a lone surrogate
// as itself (no byte of the code page stands for it). Bank lines and archive fields are
// mostly plain letters: those are taken as they are without looking further.
template<typename Emit>
void forEachCodePoint(QStringView text, Emit take)
{
    const qsizetype n = text.size();
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t c = text[i].unicode();
        if (isOneByte(c)) {
            take(char32_t(c));
            continue;
        }
        char32_t ucs = c;
        if (QChar::isHighSurrogate(c) && i + 1 < n && text[i + 1].isLowSurrogate())
            ucs = QChar::surrogateToUcs4(c, text[++i].unicode());
        take(substitute(ucs));
    }
}

} // namespace

bool isRepresentable(char32_t ucs)
{
    return byteOf(ucs) >= 0;
}

QString toCodePage(QStringView text)
{
    // Most texts are plain already: they are taken whole.
    if (std::all_of(text.begin(), text.end(), [](QChar c) { return isOneByte(c.unicode()); }))
        return text.toString();
    QString out(text.size(), Qt::Uninitialized);
    QChar *p = out.data();
    qsizetype used = 0;
    forEachCodePoint(text, [&](char32_t ucs) { p[used++] = QChar(char16_t(ucs)); });
    out.truncate(used);
    return out;
}

qsizetype encodeInto(QStringView text, char *out)
{
    // The plain beginning of the text (usually all of it) byte for byte, the rest one code
    // point at a time.
    const qsizetype n = text.size();
    qsizetype plain = 0;
    for (const char16_t *c = text.utf16(); plain < n && isOneByte(c[plain]); ++plain)
        out[plain] = char(c[plain]);
    qsizetype used = plain;
    forEachCodePoint(text.sliced(plain), [&](char32_t ucs) { out[used++] = char(byteOf(ucs)); });
    return used;
}

QByteArray encode(QStringView text)
{
    QByteArray out(text.size(), Qt::Uninitialized);
    out.truncate(encodeInto(text, out.data()));
    return out;
}

QString decode(QByteArrayView bytes)
{
    QString out(bytes.size(), Qt::Uninitialized);
    QChar *p = out.data();
    for (char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        *p++ = b >= 0x80 && b <= 0x9F && High[b - 0x80] != 0 ? QChar(High[b - 0x80])
                                                             : QChar(char16_t(b));
    }
    return out;
}

} // namespace pg::cp1252
