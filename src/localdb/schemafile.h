#pragma once

#include "localdb/schema.h"

#include <QByteArray>

namespace pg::localdb {

// The schema description file ("QXARTRAC.DAT", and the "tracciati_new.txt" that the generator
// writes): Windows-1252 text, one record a line, fields separated by TAB. The first field is a
// keyword; the others are positional:
//
//   Database        name, version (the current version, compared without regard to case)
//   Tabella         table name                         starts a table
//   Campo           name, type, size, attributes, allow zero length, default value, required
//   Indice          name, ignore nulls, primary, unique  starts an index of the open table
//   ColonnaIndice   field name                         one column of the open index
//   FineIndice / FineTabella                           end the index / the table
//   Query           name, text, maximum records        a stored query
//   Relazioni       name, attributes, foreign table, table   starts a relation
//   CampoRelazione  field name (of table), foreign field name (of the foreign table)
//   FineRelazione                                      ends the relation
//
// Reading: lines end in CR LF (a lone LF or CR is taken as well); each line is trimmed of
// leading and trailing blanks (spaces: a TAB is a separator, never trimmed); in every field
// the character 255 ("ÿ") stands for a TAB inside the value; in query texts "µ" stands for a
// comma, and a leading "PARAMETERS ...;" declaration is dropped. Lines before the "Database"
// line of the current version are skipped; a keyword the program does not know is ignored.
// Truth values are True/False (also Vero/Falso, Yes/No, -1/0); numbers are decimal integers.
//
// Commas: the suite's reader ended a value at a comma, so that the rest of the line became
// a value of its own and the object was silently cut short. Here a comma anywhere in a line
// after the header is refused with the line's number: query texts write it as "µ".
//
// Everything else that would build a wrong or partial database is refused as well, with the
// line and the problem: too few fields, a number or truth value that does not read, an unknown
// type number, a field, index or index column outside its table or index, an object left open
// at the end of the file, duplicate names, index columns and relation fields that name no
// field, relations that name no table, an enforced relation without a unique index on the
// primary table's fields. Extra fields at the end of a line are ignored.

// Reads a schema description; throws SchemaError when it is missing the current version or
// is not correct.
DatabaseSchema parseSchemaDescription(const QByteArray &bytes);

// Writes the description in the file's form: Windows-1252, CR LF line ends, TAB inside a
// value as character 255, line breaks in query texts as blanks and commas as "µ".
QByteArray writeSchemaDescription(const DatabaseSchema &schema);

// A query text as the file carries it turned into the text that is stored ("µ" to comma,
// PARAMETERS declaration dropped).
QString queryTextFromFile(const QString &fileText);

} // namespace pg::localdb
