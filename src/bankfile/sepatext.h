#pragma once

#include <QString>

namespace pg::bankfile {

// Texts of the XML bank file in the Latin character set that every SEPA bank takes: the
// letters a-z and A-Z, the digits and the signs / - ? : ( ) . , ' + and the blank.
//
// Any other character is transliterated rather than dropped, so that names stay readable:
// accented letters lose their accents ("Forlì" -> "Forli"), ligatures and letters without an
// accent-free form are spelled out ("ß" -> "ss", "Æ" -> "AE", "Ł" -> "L"), "&" becomes "+",
// quotes become "'", dashes and "_" become "-", brackets become round ones, ";" becomes ",",
// "€" becomes "EUR" and "°" (as in "N°") becomes "."; whatever is left becomes a blank.
class SepaText
{
public:
    // True for a character of the set.
    static bool isLatin(QChar c);

    // The text with every character in the set.
    static QString latin(const QString &text);

    // A field of the file: the text in the set, runs of blanks as one blank, no blanks at its
    // ends, cut to maxLength characters (and the blanks left at the cut removed).
    static QString field(const QString &text, int maxLength);
};

} // namespace pg::bankfile
