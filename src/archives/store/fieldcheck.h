#pragma once

#include "recordlayout.h"

#include <QByteArrayView>
#include <QString>

namespace pg::archives {

// Whether a field's value fits the kind its layout gives it, as the load of records from text
// checks every value before anything is written: an amount the program would read as 0, a
// date that does not exist or a code with letters would otherwise be paid as they read.
// stored: the field's bytes (Windows-1252), trailing blanks included or not. A value of
// blanks only is always accepted here (whether the field may be blank is the record's rule,
// FieldDef::required). Empty when the value fits, otherwise the reason in Italian.
QString fieldValueProblem(const FieldDef &field, QByteArrayView stored);

// Whether the value of a field holds nothing but blanks (or NULs, which the suite reads as
// blanks).
bool isBlankValue(QByteArrayView stored);

} // namespace pg::archives
