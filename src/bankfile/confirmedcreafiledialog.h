#pragma once

#include "creafiledialog.h"

namespace pg::bankfile {

// The dialog of the command line and of scripted runs: confirms at once, writing to the file
// given, or to the proposed one when none is given.
class ConfirmedCreaFileDialog : public CreaFileDialog
{
public:
    explicit ConfirmedCreaFileDialog(QString fileName = {}) : m_fileName(std::move(fileName)) {}

    QString exec(CreaFileFields &fields, distinta::Distinta &, bool) override
    {
        if (!m_fileName.isEmpty())
            fields.fileName = m_fileName;
        return confirmed();
    }

private:
    QString m_fileName;
};

} // namespace pg::bankfile
