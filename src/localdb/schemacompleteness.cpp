#include "schemacompleteness.h"

#include <algorithm>

namespace pg::localdb {

void requireProgramSchema(const DatabaseSchema &file, const DatabaseSchema &program)
{
    for (const SchemaTable &needed : program.tables) {
        const SchemaTable *table = file.table(needed.name);
        if (!table)
            throw SchemaError{
                0,
                QStringLiteral("manca la tabella \"%1\": il file è incompleto.").arg(needed.name),
                false};
        for (const SchemaField &field : needed.fields)
            if (!table->field(field.name))
                throw SchemaError{table->line,
                                  QStringLiteral("la tabella \"%1\" non ha il campo \"%2\".")
                                      .arg(needed.name, field.name),
                                  false};
    }
    // Queries and relations come last in the file: a file cut after its tables lacks them.
    for (const SchemaQuery &needed : program.queries)
        if (std::none_of(file.queries.begin(), file.queries.end(),
                         [&](const SchemaQuery &q) { return sameName(q.name, needed.name); }))
            throw SchemaError{
                0, QStringLiteral("manca la query \"%1\": il file è incompleto.").arg(needed.name),
                false};
    // A relation is known by the tables it joins: its name may differ (a clash renames it).
    for (const SchemaRelation &needed : program.relations)
        if (std::none_of(file.relations.begin(), file.relations.end(),
                         [&](const SchemaRelation &r) {
                             return sameName(r.table, needed.table) &&
                                    sameName(r.foreignTable, needed.foreignTable);
                         }))
            throw SchemaError{0,
                              QStringLiteral("manca la relazione tra le tabelle \"%1\" e \"%2\": "
                                             "il file è incompleto.")
                                  .arg(needed.table, needed.foreignTable),
                              false};
}

} // namespace pg::localdb
