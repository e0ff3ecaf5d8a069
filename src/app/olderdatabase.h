#pragma once

#include "localdb/databaselocation.h"
#include "startup/companyenvironment.h"

#include <QStringList>

namespace pg::app {

// The database of an earlier version of the program: a Jet file, "Pagame.mdb" beside the
// company's archives or "<company code>Pagam.mdb" in the program directory. This version never
// opens or changes it; start-up tells the clerk that its distinte are not shown here, rather
// than starting empty without a word.
class OlderDatabase
{
public:
    // The earlier version's files that the company's directories hold.
    static QStringList find(const CompanyEnvironment &environment);
    // What the clerk is told about them.
    static QString message(const QStringList &files);
    // Tells it while the company's database holds no distinta of its own (the clerk has not
    // started with this version yet); nothing otherwise.
    static void notice(const CompanyEnvironment &environment,
                       const localdb::DatabaseLocation &database);
};

} // namespace pg::app
