#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

namespace pg::editor {

// The payment reasons of "causali.ini" (program directory, section "CAUSALI"): each key is a
// two-character reason code of the due items, its value "SI" or "NO". The file is read once
// for a whole walk over the due items.
//
// A reason marked "NO" keeps its due items out of the distinte; a reason marked "SI", and a
// reason the file does not list (or a missing file), lets them in, so that a reason added to
// the suite later is never silently dropped. Other entries of the section (older files carry a
// "REGIVA" entry) name no two-character reason and so never match a due item.
class DueItemCausali
{
public:
    DueItemCausali() = default;
    static DueItemCausali load(const QString &iniPath);
    // ProgramDir() + "causali.ini".
    static QString defaultPath();

    // Whether due items of the reason (the record's two bytes, as stored) are taken.
    bool taken(QByteArrayView reason) const;

private:
    QHash<QByteArray, bool> m_taken; // reason code, trimmed and in capitals
};

} // namespace pg::editor
