#pragma once

#include "distinta.h"

namespace pg::distinta {

// The description a grouped payment of many documents gets when the list of its documents
// would be too long: "NNN" is the number of documents ("DesAlt" of the options, always 30
// characters).
QString defaultGroupDescriptionTemplate();

// Rebuilds the grouped rows of a distinta from its rows: one grouped row per beneficiary
// account, beneficiary bank and beneficiary agency, a copy of the group's first row with the
// eight amounts summed and, when it pays more than one document, a description listing them
// ("Vs.Fatt.120-121") or, past 30 characters, the template with the count of documents.
//
// The description being built, the last document seen and the count of documents are single
// working values of the whole run: they start again when a group starts and carry on
// otherwise, also when the next row belongs to another existing group. Rows are taken in the
// order of the distinta's rows. Groups are found through a map, so the work is linear.
void raggruppaRighe(Distinta &distinta, const QString &groupTemplate);

} // namespace pg::distinta
