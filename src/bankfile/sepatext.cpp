#include "sepatext.h"

#include <QList>

namespace pg::bankfile {

namespace {

// Characters with a spelling of their own, looked up before the accents are removed.
QString spelled(char32_t ucs)
{
    switch (ucs) {
    case U'ß':
        return QStringLiteral("ss");
    case U'Æ':
        return QStringLiteral("AE");
    case U'æ':
        return QStringLiteral("ae");
    case U'Œ':
        return QStringLiteral("OE");
    case U'œ':
        return QStringLiteral("oe");
    case U'Ø':
        return QStringLiteral("O");
    case U'ø':
        return QStringLiteral("o");
    case U'Ł':
        return QStringLiteral("L");
    case U'ł':
        return QStringLiteral("l");
    case U'Đ':
        return QStringLiteral("D");
    case U'đ':
        return QStringLiteral("d");
    case U'Þ':
        return QStringLiteral("TH");
    case U'þ':
        return QStringLiteral("th");
    case U'Ð':
        return QStringLiteral("D");
    case U'ð':
        return QStringLiteral("d");
    case U'ı':
        return QStringLiteral("i");
    case U'€':
        return QStringLiteral("EUR");
    case U'&':
        return QStringLiteral("+");
    case U'°':
        return QStringLiteral(".");
    case U'"':
    case U'`':
    case U'´':
    case U'‘':
    case U'’':
    case U'‚':
    case U'‛':
    case U'“':
    case U'”':
    case U'„':
    case U'«':
    case U'»':
    case U'‹':
    case U'›':
        return QStringLiteral("'");
    case U'_':
    case U'‐':
    case U'‑':
    case U'‒':
    case U'–':
    case U'—':
    case U'−':
        return QStringLiteral("-");
    case U'[':
    case U'{':
    case U'<':
        return QStringLiteral("(");
    case U']':
    case U'}':
    case U'>':
        return QStringLiteral(")");
    case U';':
        return QStringLiteral(",");
    case U'\\':
    case U'⁄':
        return QStringLiteral("/");
    default:
        break;
    }
    return {};
}

} // namespace

bool SepaText::isLatin(QChar c)
{
    const char16_t u = c.unicode();
    return (u >= u'a' && u <= u'z') || (u >= u'A' && u <= u'Z') || (u >= u'0' && u <= u'9') ||
           QStringView(u"/-?:().,'+ ").contains(c);
}

QString SepaText::latin(const QString &text)
{
    QString out;
    out.reserve(text.size());
    for (char32_t ucs : text.toUcs4()) {
        const QString one = QString::fromUcs4(&ucs, 1);
        if (one.size() == 1 && isLatin(one.at(0))) {
            out += one;
            continue;
        }
        if (const QString s = spelled(ucs); !s.isEmpty()) {
            out += s;
            continue;
        }
        // The compatibility decomposition: a letter and its accents ("è" -> "e" + grave), a
        // ligature its letters ("ﬁ" -> "fi"), an ordinal its letter ("ª" -> "a"). What is
        // left in the set is kept; a character with nothing in it becomes a blank.
        QString kept;
        for (QChar c : one.normalized(QString::NormalizationForm_KD))
            if (isLatin(c))
                kept += c;
        out += kept.isEmpty() ? QStringLiteral(" ") : kept;
    }
    return out;
}

QString SepaText::field(const QString &text, int maxLength)
{
    QString out = latin(text).simplified();
    if (out.size() > maxLength) {
        out.truncate(maxLength);
        while (out.endsWith(u' '))
            out.chop(1);
    }
    return out;
}

} // namespace pg::bankfile
