#pragma once

#include <QString>

namespace pg::archives {

class RecordManager;

// The record manager's error codes and archives in the clerk's words, for the messages that
// tell which archive failed and why.

// "archivio danneggiato (errore 6)"; an unknown code as "errore N".
QString archiveErrorText(qint32 code);

// "archivio 38 (Scadenze)", with the store's file when the record manager is the embedded
// store ("archivio 38 (Scadenze, file /srv/orvida/D_AZI1/archivi.db)").
QString archiveDescription(const RecordManager &manager, int archive);

} // namespace pg::archives
