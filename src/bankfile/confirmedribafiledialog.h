#pragma once

#include "creafiledialog.h"
#include "ribafiledialog.h"

namespace pg::bankfile {

// The RiBa dialog of the command line: confirms at once, writing to the file given (or to the
// proposed one) and grouping the due items as asked.
class ConfirmedRibaFileDialog : public RibaFileDialog
{
public:
    ConfirmedRibaFileDialog(QString fileName, bool raggruppa)
        : m_fileName(std::move(fileName)), m_raggruppa(raggruppa)
    {}

    QString exec(RibaFileFields &fields) override
    {
        if (!m_fileName.isEmpty())
            fields.fileName = m_fileName;
        fields.raggruppa = m_raggruppa;
        return CreaFileDialog::confirmed();
    }

private:
    QString m_fileName;
    bool m_raggruppa;
};

} // namespace pg::bankfile
