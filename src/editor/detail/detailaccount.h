#pragma once

#include "detailfield.h"

namespace pg::archives {
class ErpSession;
}

namespace pg::editor {

// The data of a customer or supplier as its detail window shows them: the master record
// (archive 0: name, address, tax identifiers), its bank data (archive 3, with the bank and
// agency named from the common tables) and its administrative site (archive 42).
class AccountDetail
{
public:
    static AccountDetail read(archives::ErpSession &erp, const QString &code);

    bool found() const { return m_found; }
    const QString &code() const { return m_code; }
    const QString &kind() const { return m_kind; } // "F" supplier, "C" customer
    const QString &ragsoc() const { return m_ragsoc; }
    DetailFields fields() const { return m_fields; }

private:
    QString m_code;
    QString m_kind;
    QString m_ragsoc;
    bool m_found = false;
    DetailFields m_fields;
};

} // namespace pg::editor
