#pragma once

#include "localdb/sqldialect.h"

#include <optional>

// How a PostgreSQL server keeps what the schema description says. Names are folded to lower
// case (so that the program's SQL, written without quotes, finds them) and quoted. Types:
//
//   1 boolean      boolean            6 single     real                12 memo    text "C"
//   2 byte         smallint           7 double     double precision    15 GUID    uuid
//   3 integer      smallint           8 date/time  date                20 decimal numeric
//   4 long         integer           10 text       varchar(size) "C"
//   5 currency     numeric(19,4)     11 long binary bytea
//
// Texts are compared byte by byte (collation "C"), as SQLite compares them: the six-character
// distinta codes, right-aligned with blanks, sort as their numbers. Dates are days, as the
// program keeps them. Every table has a column "rowid" numbered by the server (an identity),
// which the description does not list: it identifies a row as SQLite's own rowid does.
namespace pg::localdb {

const SqlDialect &postgresDialect();

namespace pgmap {

// The field a column of the server describes, from information_schema's data type, length,
// nullability and default.
SchemaField fieldFromColumn(const QString &name, const QString &dataType, int length, bool notNull,
                            const QString &defaultSql);

} // namespace pgmap

} // namespace pg::localdb
