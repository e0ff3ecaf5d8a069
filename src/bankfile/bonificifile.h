#pragma once

#include "cbiarchivereader.h"

#include "archives/store/companydata.h"
#include "distinta/recordset.h"
#include "distinta/riga.h"
#include "distinta/testata.h"

#include <QByteArrayList>
#include <QIODevice>
#include <QStringList>

#include <functional>

namespace pg::bankfile {

// The CBI "Bonifici" file of one distinta: every record of every disposition is built in
// memory first (one array per record type, one entry per disposition), then the whole file is
// written in one pass, Windows-1252 with CR LF line ends.
//
// A disposition is one row of the distinta (or one grouped row). Missing data of the suite
// never stops the file: a bank and agency that the suite does not know give ABI and CAB
// "00000"; a presenting bank or a beneficiary without a usable IBAN leaves its "16" or "17"
// line out, and the clerk is told while the file is written.
class BonificiFile
{
public:
    // The "17" line of a disposition: written, or left out and why.
    enum class Stato17 { Mancante = 0, Valido = 1, BancaDiversa = 2 };

    BonificiFile(archives::ErpSession &erp, const archives::CompanyData &company, bool modDescr);

    // Builds "PC" and every disposition from the rows, in their order. afterDisposition(k) is
    // called once each disposition k (from 0) is built. A supplier missing from the master
    // data is reported ("Si è verificato un errore in ricerca clienti") and its disposition
    // goes on with blank name, address and tax identifier.
    void build(const distinta::Testata &header, const distinta::RecordSet<distinta::Riga> &rows,
               const std::function<void(int)> &afterDisposition = {});

    // Writes the file: "PC", each disposition ("10", "16", "17", "20", "30", "40", "50",
    // "70") and "EF". Where a "16" or "17" line is left out the clerk is told: for "16" once
    // per file, for "17" once per disposition. Returns the number of lines written.
    int write(QIODevice &device);

    int dispositions() const { return int(m_r10.size()); }
    bool valido16() const { return m_valido16; }
    Stato17 stato17(int k) const { return m_stato17.at(k); }

    static QString messaggio16();
    static QString messaggio17(Stato17 stato, const QString &supplierCode);

private:
    // Lines go to the device in blocks: one write per line costs more than the line.
    class Output;

    CbiArchiveReader m_reader;
    archives::CompanyData m_company;
    bool m_modDescr;

    distinta::Testata m_header;
    QByteArray m_pc;
    QByteArrayList m_r10;
    QByteArrayList m_r16;
    QByteArrayList m_r17;
    QByteArrayList m_r20;
    QByteArrayList m_r30;
    QByteArrayList m_r40;
    QByteArrayList m_r50;
    QByteArrayList m_r70;
    bool m_valido16 = false;
    QList<Stato17> m_stato17;
    QStringList m_fornitori; // the supplier code of each disposition, for the messages
};

} // namespace pg::bankfile
