#pragma once

#include "localdb/schema.h"

#include <QString>

#include <optional>

// How the local database keeps in SQLite what the schema description says in the terms of the
// suite's data access objects. The description is kept whole in catalog tables (see
// SchemaCatalog), so that generation gives back exactly what creation was given; the
// engine's own schema enforces what it can.
//
// Types (declared type of the column; every name is chosen so that the engine's affinity
// suits the data and the declaration maps back to the same type number):
//
//   1 boolean      BOOLEAN          6 single     FLOAT           12 memo      TEXT
//   2 byte         TINYINT          7 double     DOUBLE          15 GUID      GUID
//   3 integer      SMALLINT         8 date/time  DATETIME        20 decimal   DECIMAL
//   4 long         INTEGER         10 text       VARCHAR(size)
//   5 currency     CURRENCY        11 long binary BLOB
//
// A column that the catalog does not know (added by hand) is described from its declared
// type: the names above map back exactly; otherwise the engine's affinity rules decide
// (INT → long, CHAR/CLOB/TEXT → text of the declared length, memo without one or above 255,
// BLOB or no type → long binary, REAL/FLOA/DOUB → double, DATE/TIME → date, BOOL → boolean,
// DEC/NUMERIC → decimal, MONEY → currency, anything else → double), with the usual size of
// the type, attributes "fixed" (1) or "variable" (2), zero length allowed for text, required
// when NOT NULL, and the default written back in the suite's form.
//
// Field properties:
//   required                 NOT NULL (also every column of the primary index, as a primary
//                            key never holds a null)
//   default value            DEFAULT when it is a literal or a known function: "text" or
//                            'text' → 'text', a number → the number, True/Yes/On → 1,
//                            False/No/Off → 0, Date() → CURRENT_DATE, Now() →
//                            CURRENT_TIMESTAMP, Time() → CURRENT_TIME (a leading "=" is
//                            allowed); any other expression is kept in the catalog only
//   size of a text field     CHECK (length(column) <= size)
//   allow zero length false  CHECK (column <> '') on text and memo fields
//   attributes               catalog only (an auto-increment field is not numbered by the
//                            engine)
//
// Indexes: CREATE [UNIQUE] INDEX named "<table>.<index>" (index names are per table in the
// description, per database in the engine); unique when unique or primary; ignore nulls → a
// partial index WHERE every column IS NOT NULL.
//
// Relations: FOREIGN KEY (foreign fields) REFERENCES table (fields) in the foreign table,
// DEFERRABLE INITIALLY DEFERRED so that one transaction may write header and rows in any
// order; cascade update (256) and delete (4096) become ON UPDATE / ON DELETE CASCADE; a
// relation marked "not enforced" (2) has no foreign key, only its catalog entry.
//
// Queries: kept with their text and maximum records in the catalog; a SELECT is also created
// as a view of the same name (limited to the maximum records when there is one) unless it
// takes parameters, which a view cannot. Every query text must be valid for the engine.
namespace pg::localdb::sqlmap {

// "name" with any double quote doubled: object names are written into DDL only this way.
QString quoteIdentifier(const QString &name);

// The declared type of a field of the description.
QString declaredType(const SchemaField &field);

// The column definition of a field for CREATE TABLE and ALTER TABLE ADD COLUMN.
QString columnDefinition(const SchemaField &field, bool inPrimaryIndex);

// The SQL literal of a default value, or nothing when the engine cannot keep it.
std::optional<QString> defaultExpression(const QString &defaultValue);

// The field a column describes when the catalog does not know it: from the engine's declared
// type, NOT NULL and default text.
SchemaField fieldFromColumn(const QString &name, const QString &declaredType, bool notNull,
                            const QString &defaultSql);

// The SELECT of a view, out of its CREATE VIEW statement.
QString viewText(const QString &createSql);

// The engine's name of an index of a table.
QString indexName(const QString &table, const QString &index);

} // namespace pg::localdb::sqlmap
