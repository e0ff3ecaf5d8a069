#pragma once

#include "duitemcausali.h"
#include "duitemfilter.h"
#include "selectionvalues.h"

#include "distinta/distinta.h"

#include <functional>

namespace pg::archives {
class ErpSession;
}

namespace pg::editor {

// The walk that fills a distinta from the suite's due items: every record of archive 38 in
// the order of key 1, from the first to the last, judged by the selection's filter and by the
// payment reasons of "causali.ini"; each item that passes becomes a row of the distinta unless
// its due item already is one.
//
// The end of the archive and a read that fails are told apart: a failed read (a damaged or
// unreadable store) stops the walk and tells the clerk which archive failed and how many due
// items were read, since the rows found so far are only part of the selection. The clerk
// decides whether they stay (OnReadError::Ask); without anyone to ask they go
// (OnReadError::Refuse), so that a partial selection is never saved unseen.
class DueItemLoader
{
public:
    struct Result
    {
        qint64 read = 0;   // records read
        int added = 0;     // rows added (and kept)
        int alreadyIn = 0; // items that passed but were already rows of the distinta
        bool cancelled = false;
        bool failed = false;  // a row could not be added: the walk stopped there
        qint32 readError = 0; // the record manager's code of a failed read, 0 when none
    };

    enum class OnReadError {
        Ask,   // the clerk says whether the rows found before the failure stay
        Refuse // the rows of the walk are taken out again
    };

    // Told every ProgressInterval records; false stops the walk (the rows added stay).
    using Progress = std::function<bool(qint64 read, int added)>;
    static constexpr int ProgressInterval = 4096;

    // desPag: the description template of the clerk's settings ("DesPag").
    DueItemLoader(archives::ErpSession &erp, const SelectionValues &values, const QString &desPag,
                  DueItemCausali causali);

    void setProgress(Progress progress) { m_progress = std::move(progress); }
    void setOnReadError(OnReadError choice) { m_onReadError = choice; }

    // cmdGenera_Click: the walk over the due items into the distinta's rows.
    Result cmdGenera_Click(distinta::Distinta &d);

    // AggiungiRighe: the due item of the record as a new row of the distinta; false when its
    // due item is already a row (nothing changes then).
    bool AggiungiRighe(distinta::Distinta &d, QByteArrayView record);

    // The row description from the template: "NNNNNN/N" becomes the document number and its
    // series ("123/A"; only the number when the series is blank), any other "NNNNNN" the same,
    // "DD/DD/DD" the document date as dd/mm/yy (from the stored yyyymmdd).
    static QString descrizione(const QString &desPag, const QString &numDoc, const QString &serie,
                               const QString &dataDoc);

    // The message of a walk stopped by a failed read: the archive, the reason, what was read.
    QString readErrorMessage(const Result &result) const;

private:
    // After a failed read: true when the rows the walk added stay.
    bool keepRowsAfterReadError(const Result &result) const;

    archives::ErpSession *m_erp;
    SelectionValues m_values;
    DueItemFilter m_filter;
    QString m_desPag;
    DueItemCausali m_causali;
    Progress m_progress;
    OnReadError m_onReadError = OnReadError::Ask;
};

} // namespace pg::editor
